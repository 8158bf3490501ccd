#include <cstdint>

#include "engine/IPlugin.h"
#include "host/Commands.h"
#include "host/HostHandle.h"
#include "host/HostText.h"
#include "host/SequenceRecord.h"
#include "host/Suites.h"
#include "sdk/PixelFormats.h"
#include "sdk/PremiereApi.h"

namespace Adapter {

namespace {

// The bit fields of the engine's version and their positions in the host's version. Deliberate: bits 10 to 13
// of the engine's version are dropped, so the bug-fix field of the host's version is always 0.
struct BitField {
    unsigned from;
    unsigned width;
    unsigned to;
};
constexpr BitField s_VersionFields[] = {
    {0, 3, 19}, // version, low part
    {3, 3, 26}, // version, high part
    {6, 4, 15}, // subversion
    {14, 9, 0}, // build
    {30, 2, 9}, // stage
};

std::uint32_t HostVersion(std::uint32_t version) {
    std::uint32_t result = 0;
    for (const BitField& field : s_VersionFields)
        result |= ((version >> field.from) & ((1u << field.width) - 1)) << field.to;
    return result;
}

constexpr std::uint32_t s_AlwaysFlags = PF_OutFlag_KEEP_RESOURCE_OPEN | PF_OutFlag_NON_PARAM_VARY |
                                        PF_OutFlag_CUSTOM_UI | PF_OutFlag_SEND_UPDATE_PARAMS_UI;
static_assert(s_AlwaysFlags == 0x4008005);

// Pixel formats declared to Premiere Pro, in order of preference.
constexpr std::uint32_t s_ByteFormats[] = {PixelFormats::Argb8, PixelFormats::Xrgb8};
constexpr std::uint32_t s_DeepFormats[] = {PixelFormats::Xrgb16, PixelFormats::Argb16};
constexpr std::uint32_t s_FloatFormats[] = {PixelFormats::Argb32, PixelFormats::Xrgb32};

bool SetUpEngine(CommandCall& call) {
    void* module = nullptr;
    A_UTF16Char path[AEFX_MAX_PATH] = {};
    const auto platformData = call.in->utils->get_platform_data;
    platformData(call.in->effect_ref, PF_PlatData_BUNDLE_REF, &module);
    if (!module)
        platformData(call.in->effect_ref, PF_PlatData_RES_FILE_PATH_DEPRECATED, path);
    return call.engine.globalSetup(module, path);
}

PF_Err PublishGlobalData(CommandCall& call) {
    AEGP_SuiteHandler suites(call.in->pica_basicP);
    HostHandle handle(suites, sizeof(GlobalData));
    auto* data = static_cast<GlobalData*>(handle.Data());
    if (!data)
        return PF_Err_INTERNAL_STRUCT_DAMAGED;
    data->initialised = 1;
    if (!IsPremiere(*call.in)) {
        const std::string name = call.engine.getString(PluginString::HostId);
        const PF_Err err =
            suites.UtilitySuite3()->AEGP_RegisterWithAEGP(nullptr, name.c_str(), &data->aegpPluginId);
        if (err != PF_Err_NONE)
            return err;
    }
    handle.HandOver(call.out->global_data);
    return PF_Err_NONE;
}

// Premiere Pro takes the deep formats from its pixel format suite and not from the flags.
void DeclarePixelFormats(CommandCall& call) {
    RequiredSuite<PF_PixelFormatSuite1> suite(*call.in, {kPFPixelFormatSuite, kPFPixelFormatSuiteVersion1});
    const auto add = [&](const auto& formats) {
        for (const std::uint32_t format : formats)
            suite->AddSupportedPixelFormat(call.in->effect_ref, static_cast<PrPixelFormat>(format));
    };
    suite->ClearSupportedPixelFormats(call.in->effect_ref);
    add(s_ByteFormats);
    if (call.out->out_flags & PF_OutFlag_DEEP_COLOR_AWARE) {
        add(s_DeepFormats);
        call.out->out_flags &= ~PF_OutFlag_DEEP_COLOR_AWARE;
    }
    if (call.out->out_flags2 & PF_OutFlag2_FLOAT_COLOR_AWARE) {
        add(s_FloatFormats);
        call.out->out_flags2 &= ~PF_OutFlag2_FLOAT_COLOR_AWARE;
    }
}

} // namespace

PF_Err About(CommandCall& call) {
    if (IsPremiere(*call.in))
        return PF_Err_NONE;
    // The host prints without a limit. Two bytes of the field are for the line ends.
    const std::string text =
        BoundedText(call.engine.getString(PluginString::About), PF_MAX_EFFECT_MSG_LEN - 2);
    call.in->utils->ansi.sprintf(call.out->return_msg, "%s\n\n%s", text.c_str(), "");
    return PF_Err_NONE;
}

PF_Err GlobalSetup(CommandCall& call) {
    if (!SetUpEngine(call))
        return PF_Err_INTERNAL_STRUCT_DAMAGED;
    call.out->my_version = HostVersion(call.engine.getVersion());
    call.out->out_flags = static_cast<PF_OutFlags>(call.engine.getFlags() | s_AlwaysFlags);
    call.out->out_flags2 = static_cast<PF_OutFlags2>(call.engine.getFlags2());
    if (IsPremiere(*call.in))
        call.out->out_flags2 |= PF_OutFlag2_PPRO_DO_NOT_CLONE_SEQUENCE_DATA_FOR_RENDER;
    const PF_Err err = PublishGlobalData(call);
    if (err == PF_Err_NONE && IsPremiere(*call.in))
        DeclarePixelFormats(call);
    return err;
}

} // namespace Adapter
