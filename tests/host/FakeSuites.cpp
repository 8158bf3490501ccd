#include "tests/host/FakeSuites.h"

#include <cstdlib>
#include <cstring>
#include <iterator>

#include "AE_EffectCBSuites.h"
#include "AE_EffectSuites.h"
#include "AE_GeneralPlug.h"
#include "PrSDKAESupport.h"
#include "PrSDKSequenceInfoSuite.h"
#include "tests/host/FakeHost.h"

namespace {

FakeHost* s_Host = nullptr;

// Any non-null pointer will do for what the host calls an object.
template <class Object>
Object Token(std::uintptr_t number) {
    return reinterpret_cast<Object>(number);
}

PF_Err Borrow(const char* what) {
    s_Host->log.push_back(what);
    const PF_Err err = s_Host->Failure(what);
    if (err == PF_Err_NONE)
        ++s_Host->borrowed[what];
    return err;
}

PF_Err GiveBack(const char* what) {
    --s_Host->borrowed[what];
    return PF_Err_NONE;
}

// Memory comes filled with rubbish, as from a real host.
PF_Handle NewHandle(A_HandleSize size) {
    if (s_Host->allocationsLeft-- <= 0)
        return nullptr;
    void* block = std::malloc(size);
    std::memset(block, 0xCD, size);
    return reinterpret_cast<PF_Handle>(*s_Host->handles.insert(new void*(block)).first);
}

void* LockHandle(PF_Handle handle) {
    ++s_Host->borrowed["handle lock"];
    return *reinterpret_cast<void**>(handle);
}

void UnlockHandle(PF_Handle) {
    --s_Host->borrowed["handle lock"];
}

void DisposeHandle(PF_Handle handle) {
    void** block = reinterpret_cast<void**>(handle);
    if (s_Host->handles.erase(block) == 0)
        std::abort(); // not a live handle
    std::free(*block);
    delete block;
}

std::uint32_t FormatOf(const PF_EffectWorld* world) {
    const auto found = s_Host->formats.find(world->data);
    return found != s_Host->formats.end() ? found->second : s_Host->format;
}

PF_HandleSuite1 MakeHandleSuite() {
    PF_HandleSuite1 suite = {};
    suite.host_new_handle = NewHandle;
    suite.host_lock_handle = LockHandle;
    suite.host_unlock_handle = UnlockHandle;
    suite.host_dispose_handle = DisposeHandle;
    return suite;
}

PF_WorldSuite2 MakeWorldSuite() {
    PF_WorldSuite2 suite = {};
    suite.PF_GetPixelFormat = [](const PF_EffectWorld* world, PF_PixelFormat* format) -> PF_Err {
        if (const PF_Err err = s_Host->Failure("pixel format"))
            return err;
        *format = static_cast<PF_PixelFormat>(FormatOf(world));
        return PF_Err_NONE;
    };
    return suite;
}

PF_PixelFormatSuite1 MakePixelFormatSuite() {
    PF_PixelFormatSuite1 suite = {};
    suite.ClearSupportedPixelFormats = [](PF_ProgPtr) -> PF_Err {
        s_Host->pixelFormats.clear();
        return PF_Err_NONE;
    };
    suite.AddSupportedPixelFormat = [](PF_ProgPtr, PrPixelFormat format) -> PF_Err {
        s_Host->pixelFormats.push_back(static_cast<std::uint32_t>(format));
        return PF_Err_NONE;
    };
    suite.GetPixelFormat = [](PF_EffectWorld* world, PrPixelFormat* format) -> PF_Err {
        *format = static_cast<PrPixelFormat>(FormatOf(world));
        return PF_Err_NONE;
    };
    return suite;
}

PF_ColorParamSuite1 MakeColorSuite() {
    PF_ColorParamSuite1 suite = {};
    suite.PF_GetFloatingPointColorFromColorDef = [](PF_ProgPtr, const PF_ParamDef* def,
                                                    PF_PixelFloat* color) -> PF_Err {
        const PF_Pixel& value = def->u.cd.value;
        *color = {value.alpha / 255.0f, value.red / 255.0f, value.green / 255.0f, value.blue / 255.0f};
        return PF_Err_NONE;
    };
    return suite;
}

PF_ParamUtilsSuite3 MakeParamUtilsSuite() {
    PF_ParamUtilsSuite3 suite = {};
    suite.PF_UpdateParamUI = [](PF_ProgPtr, PF_ParamIndex index, const PF_ParamDef* def) -> PF_Err {
        s_Host->updatedUi[index] = *def;
        return s_Host->Failure("PF_UpdateParamUI");
    };
    return suite;
}

PF_EffectUISuite1 MakeEffectUiSuite() {
    PF_EffectUISuite1 suite = {};
    suite.PF_SetOptionsButtonName = [](PF_ProgPtr, const A_char* name) -> PF_Err {
        s_Host->log.push_back(std::string("options button '") + name + "'");
        return s_Host->Failure("options button");
    };
    return suite;
}

AEGP_UtilitySuite3 MakeUtilitySuite() {
    AEGP_UtilitySuite3 suite = {};
    suite.AEGP_RegisterWithAEGP = [](AEGP_GlobalRefcon refcon, const A_char* name,
                                     AEGP_PluginID* id) -> A_Err {
        s_Host->log.push_back(std::string("register ") + (refcon ? "with refcon " : "") + name);
        *id = 77;
        return s_Host->Failure("register");
    };
    return suite;
}

AEGP_PFInterfaceSuite1 MakeInterfaceSuite() {
    AEGP_PFInterfaceSuite1 suite = {};
    suite.AEGP_GetEffectLayer = [](PF_ProgPtr, AEGP_LayerH* layer) -> A_Err {
        *layer = Token<AEGP_LayerH>(0x10);
        return s_Host->Failure("effect layer");
    };
    suite.AEGP_GetNewEffectForEffect = [](AEGP_PluginID id, PF_ProgPtr, AEGP_EffectRefH* effect) -> A_Err {
        *effect = Token<AEGP_EffectRefH>(0x20);
        return id == 77 ? Borrow("effect") : 1;
    };
    return suite;
}

AEGP_EffectSuite3 MakeEffectSuite() {
    AEGP_EffectSuite3 suite = {};
    suite.AEGP_DisposeEffect = [](AEGP_EffectRefH) -> A_Err { return GiveBack("effect"); };
    return suite;
}

AEGP_LayerRenderOptionsSuite1 MakeOptionsSuite() {
    AEGP_LayerRenderOptionsSuite1 suite = {};
    suite.AEGP_NewFromUpstreamOfEffect = [](AEGP_PluginID id, AEGP_EffectRefH effect,
                                            AEGP_LayerRenderOptionsH* options) -> A_Err {
        *options = Token<AEGP_LayerRenderOptionsH>(0x30);
        return id == 77 && effect == Token<AEGP_EffectRefH>(0x20) ? Borrow("options") : 1;
    };
    suite.AEGP_SetTime = [](AEGP_LayerRenderOptionsH, A_Time time) -> A_Err {
        s_Host->log.push_back("time " + std::to_string(time.value) + "/" + std::to_string(time.scale));
        return s_Host->Failure("set time");
    };
    suite.AEGP_Dispose = [](AEGP_LayerRenderOptionsH) -> A_Err { return GiveBack("options"); };
    return suite;
}

AEGP_RenderSuite5 MakeRenderSuite() {
    AEGP_RenderSuite5 suite = {};
    suite.AEGP_RenderAndCheckoutLayerFrame = [](AEGP_LayerRenderOptionsH options,
                                                AEGP_RenderSuiteCheckForCancel, AEGP_CancelRefcon,
                                                AEGP_FrameReceiptH* receipt) -> A_Err {
        *receipt = Token<AEGP_FrameReceiptH>(0x40);
        return options == Token<AEGP_LayerRenderOptionsH>(0x30) ? Borrow("frame") : 1;
    };
    suite.AEGP_GetReceiptWorld = [](AEGP_FrameReceiptH, AEGP_WorldH* world) -> A_Err {
        *world = Token<AEGP_WorldH>(0x50);
        return s_Host->Failure("receipt world");
    };
    suite.AEGP_CheckinFrame = [](AEGP_FrameReceiptH) -> A_Err { return GiveBack("frame"); };
    return suite;
}

AEGP_WorldSuite3 MakeAegpWorldSuite() {
    AEGP_WorldSuite3 suite = {};
    suite.AEGP_FillOutPFEffectWorld = [](AEGP_WorldH world, PF_EffectWorld* effectWorld) -> A_Err {
        *effectWorld = s_Host->earlierFrame;
        return world == Token<AEGP_WorldH>(0x50) ? s_Host->Failure("fill out world") : 1;
    };
    return suite;
}

AEGP_LayerSuite5 MakeLayerSuite() {
    AEGP_LayerSuite5 suite = {};
    suite.AEGP_GetLayerParentComp = [](AEGP_LayerH layer, AEGP_CompH* comp) -> A_Err {
        *comp = Token<AEGP_CompH>(0x11);
        return layer == Token<AEGP_LayerH>(0x10) ? 0 : 1;
    };
    return suite;
}

AEGP_CompSuite4 MakeCompSuite() {
    AEGP_CompSuite4 suite = {};
    suite.AEGP_GetItemFromComp = [](AEGP_CompH comp, AEGP_ItemH* item) -> A_Err {
        *item = Token<AEGP_ItemH>(0x12);
        return comp == Token<AEGP_CompH>(0x11) ? 0 : 1;
    };
    return suite;
}

AEGP_ItemSuite6 MakeItemSuite() {
    AEGP_ItemSuite6 suite = {};
    suite.AEGP_GetItemDimensions = [](AEGP_ItemH item, A_long* width, A_long* height) -> A_Err {
        *width = s_Host->compWidth;
        *height = s_Host->compHeight;
        return item == Token<AEGP_ItemH>(0x12) ? 0 : 1;
    };
    suite.AEGP_GetItemPixelAspectRatio = [](AEGP_ItemH, A_Ratio* aspect) -> A_Err {
        *aspect = {s_Host->aspectNum, static_cast<A_u_long>(s_Host->aspectDen)};
        return s_Host->Failure("item aspect");
    };
    return suite;
}

PF_UtilitySuite MakePremiereUtilitySuite() {
    PF_UtilitySuite suite = {};
    suite.GetContainingTimelineID = [](PF_ProgPtr, PrTimelineID* timeline) -> PF_Err {
        *timeline = 42;
        return s_Host->Failure("timeline");
    };
    return suite;
}

PrSDKSequenceInfoSuite MakeSequenceInfoSuite() {
    PrSDKSequenceInfoSuite suite = {};
    suite.GetFrameRect = [](PrTimelineID timeline, prRect* frame) -> prSuiteError {
        frame->left = frame->top = 10;
        frame->right = static_cast<decltype(frame->right)>(10 + s_Host->compWidth);
        frame->bottom = static_cast<decltype(frame->bottom)>(10 + s_Host->compHeight);
        return timeline == 42 ? 0 : -1;
    };
    suite.GetPixelAspectRatio = [](PrTimelineID, csSDK_uint32* num, csSDK_uint32* den) -> prSuiteError {
        *num = static_cast<csSDK_uint32>(s_Host->aspectNum);
        *den = static_cast<csSDK_uint32>(s_Host->aspectDen);
        return 0;
    };
    return suite;
}

struct SuiteRow {
    const char* name;
    A_long number;
    enum { Both, AfterEffects, Premiere } host;
    const void* (*table)();
};

template <auto Make>
const void* Table() {
    static const auto s_Table = Make();
    return &s_Table;
}

// Names and numbers are spelled out: they are what a host compares.
const SuiteRow s_Suites[] = {
    {"PF Handle Suite", 2, SuiteRow::Both, Table<MakeHandleSuite>},
    {"PF World Suite", 2, SuiteRow::AfterEffects, Table<MakeWorldSuite>},
    {"PF Pixel Format Suite", 1, SuiteRow::Premiere, Table<MakePixelFormatSuite>},
    {"PF ColorParamSuite", 1, SuiteRow::Both, Table<MakeColorSuite>},
    {"PF Param Utils Suite", 3, SuiteRow::AfterEffects, Table<MakeParamUtilsSuite>},
    {"PF Param Utils Suite", 1, SuiteRow::Premiere, Table<MakeParamUtilsSuite>},
    {"PF Effect UI Suite", 1, SuiteRow::AfterEffects, Table<MakeEffectUiSuite>},
    {"AEGP Utility Suite", 7, SuiteRow::AfterEffects, Table<MakeUtilitySuite>},
    {"AEGP PF Interface Suite", 1, SuiteRow::AfterEffects, Table<MakeInterfaceSuite>},
    {"AEGP Effect Suite", 3, SuiteRow::AfterEffects, Table<MakeEffectSuite>},
    {"AEGP Layer Render Options Suite", 1, SuiteRow::AfterEffects, Table<MakeOptionsSuite>},
    {"AEGP Render Suite", 8, SuiteRow::AfterEffects, Table<MakeRenderSuite>},
    {"AEGP World Suite", 3, SuiteRow::AfterEffects, Table<MakeAegpWorldSuite>},
    {"AEGP Layer Suite", 11, SuiteRow::AfterEffects, Table<MakeLayerSuite>},
    {"AEGP Comp Suite", 9, SuiteRow::AfterEffects, Table<MakeCompSuite>},
    {"AEGP Item Suite", 10, SuiteRow::AfterEffects, Table<MakeItemSuite>},
    {"PF Utility Suite", 4, SuiteRow::Premiere, Table<MakePremiereUtilitySuite>},
    {"MediaCore Sequence Info Suite", 6, SuiteRow::Premiere, Table<MakeSequenceInfoSuite>},
};

const SuiteRow* FindSuite(const std::string& name, A_long number) {
    const auto other = s_Host->in.appl_id == 0x50724D72 ? SuiteRow::AfterEffects : SuiteRow::Premiere;
    for (const SuiteRow& row : s_Suites)
        if (name == row.name && number == row.number && row.host != other && !s_Host->missing.count(name))
            return &row;
    return nullptr;
}

std::string SuiteKey(const char* name, A_long number) {
    return std::string(name) + " " + std::to_string(number);
}

SPErr AcquireSuite(const char* name, std::int32_t number, const void** suite) {
    const SuiteRow* row = FindSuite(name, number);
    if (!row)
        return 0x53214664;
    *suite = row->table();
    ++s_Host->borrowed[SuiteKey(name, number)];
    return 0;
}

SPErr ReleaseSuite(const char* name, std::int32_t number) {
    --s_Host->borrowed[SuiteKey(name, number)];
    return 0;
}

} // namespace

void SetCurrentFakeHost(FakeHost* host) {
    s_Host = host;
}

SPBasicSuite* FakeBasicSuite() {
    static SPBasicSuite s_Basic = [] {
        SPBasicSuite basic = {};
        basic.AcquireSuite = AcquireSuite;
        basic.ReleaseSuite = ReleaseSuite;
        return basic;
    }();
    return &s_Basic;
}
