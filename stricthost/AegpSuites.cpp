#include <future>

#include "sdk/SuitesApi.h"
#include "stricthost/FrameGeometry.h"
#include "stricthost/HostCall.h"
#include "stricthost/HostCore.h"
#include "stricthost/PixelFormats.h"
#include "stricthost/SuiteTable.h"

namespace stricthost {

namespace {

constexpr AEGP_PluginID s_PluginId = 77;

// Their addresses are the handles of the layer, composition and item, which are never freed.
char s_LayerToken, s_CompToken, s_ItemToken;

template <class Handle>
Handle HandleFor(void* object) {
    return reinterpret_cast<Handle>(object);
}

A_Err Refuse(const char* what) {
    if (const HostCall* call = HostCall::Require(what))
        call->Report(std::string("called ") + what + " with an object that does not belong to this host");
    return A_Err_PARAMETER;
}

A_Err Register(AEGP_GlobalRefcon, const A_char* name, AEGP_PluginID* id) {
    const HostCall* call = HostCall::Require("AEGP_RegisterWithAEGP");
    if (!call || !name || !id)
        return A_Err_PARAMETER;
    if (call->host.options.registerError == A_Err_NONE)
        *id = s_PluginId;
    return call->host.options.registerError;
}

A_Err EffectLayer(PF_ProgPtr effect, AEGP_LayerH* layer) {
    if (!HostCall::From(effect, "AEGP_GetEffectLayer") || !layer)
        return A_Err_PARAMETER;
    *layer = HandleFor<AEGP_LayerH>(&s_LayerToken);
    return A_Err_NONE;
}

A_Err LayerComp(AEGP_LayerH layer, AEGP_CompH* comp) {
    if (reinterpret_cast<void*>(layer) != &s_LayerToken || !comp)
        return Refuse("AEGP_GetLayerParentComp");
    *comp = HandleFor<AEGP_CompH>(&s_CompToken);
    return A_Err_NONE;
}

A_Err CompItem(AEGP_CompH comp, AEGP_ItemH* item) {
    if (reinterpret_cast<void*>(comp) != &s_CompToken || !item)
        return Refuse("AEGP_GetItemFromComp");
    *item = HandleFor<AEGP_ItemH>(&s_ItemToken);
    return A_Err_NONE;
}

A_Err ItemDimensions(AEGP_ItemH item, A_long* width, A_long* height) {
    const HostCall* call = HostCall::Require("AEGP_GetItemDimensions");
    if (!call || reinterpret_cast<void*>(item) != &s_ItemToken || !width || !height)
        return Refuse("AEGP_GetItemDimensions");
    const Extents comp = CompSize(*call);
    *width = comp.width;
    *height = comp.height;
    return A_Err_NONE;
}

A_Err ItemAspect(AEGP_ItemH item, A_Ratio* aspect) {
    const HostCall* call = HostCall::Require("AEGP_GetItemPixelAspectRatio");
    if (!call || reinterpret_cast<void*>(item) != &s_ItemToken || !aspect)
        return Refuse("AEGP_GetItemPixelAspectRatio");
    *aspect = call->host.options.compAspect;
    return A_Err_NONE;
}

AegpObject* Find(const void* object, AegpObject::Kind kind, const char* what) {
    const HostCall* call = HostCall::Require(what);
    return call ? call->host.aegp.Find(object, kind, std::string(call->Name()) + ", in " + what + ",")
                : nullptr;
}

A_Err Destroy(const void* handle, AegpObject::Kind kind, const char* what) {
    const AegpObject* object = Find(handle, kind, what);
    if (!object)
        return A_Err_PARAMETER;
    HostCore& host = HostCall::Require(what)->host;
    if (object->world)
        host.worlds.Retire(*object->world);
    host.aegp.Destroy(*object);
    return A_Err_NONE;
}

A_Err NewEffect(AEGP_PluginID id, PF_ProgPtr effect, AEGP_EffectRefH* reference) {
    const HostCall* call = HostCall::From(effect, "AEGP_GetNewEffectForEffect");
    if (!call || !reference)
        return A_Err_PARAMETER;
    if (id != s_PluginId) {
        call->Report("used an AEGP plug-in id that it was not given");
        return A_Err_PARAMETER;
    }
    *reference = HandleFor<AEGP_EffectRefH>(&call->host.aegp.Create(AegpObject::Kind::Effect));
    return A_Err_NONE;
}

A_Err DisposeEffect(AEGP_EffectRefH effect) {
    return Destroy(effect, AegpObject::Kind::Effect, "AEGP_DisposeEffect");
}

A_Err NewOptions(AEGP_PluginID id, AEGP_EffectRefH effect, AEGP_LayerRenderOptionsH* options) {
    const char* what = "AEGP_NewFromUpstreamOfEffect";
    if (id != s_PluginId || !options || !Find(effect, AegpObject::Kind::Effect, what))
        return A_Err_PARAMETER;
    AegpObjects& objects = HostCall::Require(what)->host.aegp;
    *options = HandleFor<AEGP_LayerRenderOptionsH>(&objects.Create(AegpObject::Kind::RenderOptions));
    return A_Err_NONE;
}

A_Err SetTime(AEGP_LayerRenderOptionsH options, A_Time time) {
    AegpObject* object = Find(options, AegpObject::Kind::RenderOptions, "AEGP_SetTime");
    if (!object || time.scale == 0)
        return A_Err_PARAMETER;
    object->time = time;
    return A_Err_NONE;
}

A_Err DisposeOptions(AEGP_LayerRenderOptionsH options) {
    return Destroy(options, AegpObject::Kind::RenderOptions, "AEGP_Dispose");
}

A_Err RenderLayerFrame(AEGP_LayerRenderOptionsH options, AEGP_RenderSuiteCheckForCancel, AEGP_CancelRefcon,
                       AEGP_FrameReceiptH* receipt) {
    const char* what = "AEGP_RenderAndCheckoutLayerFrame";
    const AegpObject* object = Find(options, AegpObject::Kind::RenderOptions, what);
    if (!object || !receipt)
        return A_Err_PARAMETER;
    HostCore& host = HostCall::Require(what)->host;
    if (!host.options.upstreamFrame)
        return A_Err_GENERIC;
    if (host.Interrupted(*HostCall::Require(what)))
        return PF_Interrupt_CANCEL;
    const auto render = [&] { return host.options.upstreamFrame(object->time.value, object->time.scale); };
    const fxhost::Picture picture =
        host.options.quirks.upstreamThread ? std::async(std::launch::async, render).get() : render();
    World& world =
        host.worlds.Create(host.Shape(static_cast<A_long>(picture.width), static_cast<A_long>(picture.height),
                                      FormatOfBits(picture.depth)),
                           "an earlier frame");
    world.Load(picture, 0, 0);
    AegpObject& made = host.aegp.Create(AegpObject::Kind::FrameReceipt);
    made.world = &world;
    *receipt = HandleFor<AEGP_FrameReceiptH>(&made);
    return A_Err_NONE;
}

// The handle of a receipt's world is the address of the receipt.
A_Err ReceiptWorld(AEGP_FrameReceiptH receipt, AEGP_WorldH* world) {
    AegpObject* object = Find(receipt, AegpObject::Kind::FrameReceipt, "AEGP_GetReceiptWorld");
    if (!object || !world)
        return A_Err_PARAMETER;
    *world = HandleFor<AEGP_WorldH>(object);
    return A_Err_NONE;
}

A_Err FillOutWorld(AEGP_WorldH world, PF_EffectWorld* def) {
    const AegpObject* object = Find(world, AegpObject::Kind::FrameReceipt, "AEGP_FillOutPFEffectWorld");
    if (!object || !def)
        return A_Err_PARAMETER;
    *def = object->world->Def();
    return A_Err_NONE;
}

A_Err CheckinFrame(AEGP_FrameReceiptH receipt) {
    return Destroy(receipt, AegpObject::Kind::FrameReceipt, "AEGP_CheckinFrame");
}

template <class Suite, class Function>
Suite With(Function Suite::*member, Function function) {
    Suite suite = {};
    suite.*member = function;
    return suite;
}

AEGP_PFInterfaceSuite1 MakeInterface() {
    AEGP_PFInterfaceSuite1 suite = {};
    suite.AEGP_GetEffectLayer = EffectLayer;
    suite.AEGP_GetNewEffectForEffect = NewEffect;
    return suite;
}

AEGP_ItemSuite6 MakeItem() {
    AEGP_ItemSuite6 suite = {};
    suite.AEGP_GetItemDimensions = ItemDimensions;
    suite.AEGP_GetItemPixelAspectRatio = ItemAspect;
    return suite;
}

AEGP_LayerRenderOptionsSuite1 MakeRenderOptions() {
    AEGP_LayerRenderOptionsSuite1 suite = {};
    suite.AEGP_NewFromUpstreamOfEffect = NewOptions;
    suite.AEGP_SetTime = SetTime;
    suite.AEGP_Dispose = DisposeOptions;
    return suite;
}

AEGP_RenderSuite5 MakeRender() {
    AEGP_RenderSuite5 suite = {};
    suite.AEGP_RenderAndCheckoutLayerFrame = RenderLayerFrame;
    suite.AEGP_GetReceiptWorld = ReceiptWorld;
    suite.AEGP_CheckinFrame = CheckinFrame;
    return suite;
}

const auto s_Utility = With(&AEGP_UtilitySuite3::AEGP_RegisterWithAEGP, Register);
const auto s_Interface = MakeInterface();
const auto s_Effect = With(&AEGP_EffectSuite3::AEGP_DisposeEffect, DisposeEffect);
const auto s_Layer = With(&AEGP_LayerSuite5::AEGP_GetLayerParentComp, LayerComp);
const auto s_Comp = With(&AEGP_CompSuite4::AEGP_GetItemFromComp, CompItem);
const auto s_Item = MakeItem();
const auto s_RenderOptions = MakeRenderOptions();
const auto s_Render = MakeRender();
const auto s_World = With(&AEGP_WorldSuite3::AEGP_FillOutPFEffectWorld, FillOutWorld);

} // namespace

const SuiteRow* AegpSuites() {
    constexpr auto ae = SuiteRow::AfterEffects;
    static const SuiteRow s_Rows[] = {
        {kAEGPUtilitySuite, kAEGPUtilitySuiteVersion3, ae, &s_Utility},
        {kAEGPPFInterfaceSuite, kAEGPPFInterfaceSuiteVersion1, ae, &s_Interface},
        {kAEGPEffectSuite, kAEGPEffectSuiteVersion3, ae, &s_Effect},
        {kAEGPLayerSuite, kAEGPLayerSuiteVersion5, ae, &s_Layer},
        {kAEGPCompSuite, kAEGPCompSuiteVersion4, ae, &s_Comp},
        {kAEGPItemSuite, kAEGPItemSuiteVersion6, ae, &s_Item},
        {kAEGPLayerRenderOptionsSuite, kAEGPLayerRenderOptionsSuiteVersion1, ae, &s_RenderOptions},
        {kAEGPRenderSuite, kAEGPRenderSuiteVersion5, ae, &s_Render},
        {kAEGPWorldSuite, kAEGPWorldSuiteVersion3, ae, &s_World},
        {nullptr, 0, ae, nullptr},
    };
    return s_Rows;
}

} // namespace stricthost
