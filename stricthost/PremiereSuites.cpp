#include "sdk/PremiereApi.h"
#include "stricthost/FrameGeometry.h"
#include "stricthost/HostCall.h"
#include "stricthost/HostCore.h"
#include "stricthost/PluginWorlds.h"
#include "stricthost/SuiteTable.h"

namespace stricthost {

namespace {

constexpr PrTimelineID s_Timeline = 42;
constexpr prSuiteError s_InvalidParameters = static_cast<prSuiteError>(0x80000001);

// The current command, which must be global set-up: formats cannot be declared later. Null with a violation.
HostCall* FormatCall(PF_ProgPtr effect, const char* what) {
    HostCall* call = HostCall::From(effect, what);
    if (call && call->command != PF_Cmd_GLOBAL_SETUP) {
        call->Report("declared pixel formats out of turn");
        return nullptr;
    }
    return call;
}

PF_Err AddFormat(PF_ProgPtr effect, PrPixelFormat format) {
    HostCall* call = FormatCall(effect, "AddSupportedPixelFormat");
    if (!call)
        return PF_Err_INVALID_CALLBACK;
    call->host.formats.push_back(static_cast<std::uint32_t>(format));
    return PF_Err_NONE;
}

PF_Err ClearFormats(PF_ProgPtr effect) {
    HostCall* call = FormatCall(effect, "ClearSupportedPixelFormats");
    if (!call)
        return PF_Err_INVALID_CALLBACK;
    call->host.formats.clear();
    return PF_Err_NONE;
}

PF_Err NewWorld(PF_ProgPtr effect, A_u_long width, A_u_long height, PF_NewWorldFlags, PrPixelFormat format,
                PF_EffectWorld* world) {
    return CreatePluginWorld(effect, static_cast<A_long>(width), static_cast<A_long>(height),
                             static_cast<std::uint32_t>(format), world);
}

PF_Err WorldFormat(PF_EffectWorld* def, PrPixelFormat* format) {
    HostCall* call = HostCall::Require("GetPixelFormat");
    const World* world = call ? call->host.worlds.Find(def) : nullptr;
    if (call && !world)
        call->Report("asked for the pixel format of a world that does not exist");
    if (!world || !format)
        return PF_Err_BAD_CALLBACK_PARAM;
    *format = static_cast<PrPixelFormat>(world->Format());
    return PF_Err_NONE;
}

PF_Err TimelineId(PF_ProgPtr effect, PrTimelineID* timeline) {
    if (!HostCall::From(effect, "GetContainingTimelineID") || !timeline)
        return PF_Err_BAD_CALLBACK_PARAM;
    *timeline = s_Timeline;
    return PF_Err_NONE;
}

prSuiteError FrameRect(PrTimelineID timeline, prRect* rect) {
    const HostCall* call = HostCall::Require("GetFrameRect");
    if (!call || timeline != s_Timeline || !rect)
        return s_InvalidParameters;
    const Extents comp = CompSize(*call);
    *rect = {};
    rect->right = static_cast<decltype(rect->right)>(comp.width);
    rect->bottom = static_cast<decltype(rect->bottom)>(comp.height);
    return 0;
}

prSuiteError SequenceAspect(PrTimelineID timeline, csSDK_uint32* numerator, csSDK_uint32* denominator) {
    const HostCall* call = HostCall::Require("GetPixelAspectRatio");
    if (!call || timeline != s_Timeline || !numerator || !denominator)
        return s_InvalidParameters;
    *numerator = static_cast<csSDK_uint32>(call->host.options.compAspect.num);
    *denominator = call->host.options.compAspect.den;
    return 0;
}

PF_PixelFormatSuite MakeFormats() {
    PF_PixelFormatSuite suite = {};
    suite.AddSupportedPixelFormat = AddFormat;
    suite.ClearSupportedPixelFormats = ClearFormats;
    suite.NewWorldOfPixelFormat = NewWorld;
    suite.DisposeWorld = DisposePluginWorld;
    suite.GetPixelFormat = WorldFormat;
    return suite;
}

PF_UtilitySuite MakeUtility() {
    PF_UtilitySuite suite = {};
    suite.GetContainingTimelineID = TimelineId;
    return suite;
}

PrSDKSequenceInfoSuite MakeSequenceInfo() {
    PrSDKSequenceInfoSuite suite = {};
    suite.GetFrameRect = FrameRect;
    suite.GetPixelAspectRatio = SequenceAspect;
    return suite;
}

const auto s_Formats = MakeFormats();
const auto s_Utility = MakeUtility();
const auto s_SequenceInfo = MakeSequenceInfo();

} // namespace

const SuiteRow* PremiereSuites() {
    constexpr auto premiere = SuiteRow::Premiere;
    static const SuiteRow s_Rows[] = {
        {kPFPixelFormatSuite, kPFPixelFormatSuiteVersion1, premiere, &s_Formats},
        {kPFUtilitySuite, 9, premiere, &s_Utility},
        {kPFUtilitySuite, 4, premiere, &s_Utility},
        {kPrSDKSequenceInfoSuite, 6, premiere, &s_SequenceInfo},
        {nullptr, 0, premiere, nullptr},
    };
    return s_Rows;
}

} // namespace stricthost
