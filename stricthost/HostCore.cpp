#include "stricthost/HostCore.h"

#include <algorithm>

#include "stricthost/HostCall.h"
#include "stricthost/InteractCallbacks.h"
#include "stricthost/UtilCallbacks.h"

namespace stricthost {

namespace {

constexpr A_long s_AfterEffectsId = 0x46585443; // 'FXTC'
constexpr A_long s_PremiereId = 0x50724D72;     // 'PrMr'
constexpr A_short s_CurrentMinor = 28;
constexpr A_short s_PremiereMinor = 4; // Premiere Pro reports an older version

bool SetsSequenceData(PF_Cmd command) {
    return command >= PF_Cmd_SEQUENCE_SETUP && command <= PF_Cmd_SEQUENCE_SETDOWN;
}

void CheckHandle(const HostCall& call, PF_Handle handle, const char* field) {
    if (handle && !call.host.handles.IsLive(handle))
        call.Report(std::string("left a handle in ") + field + " that is not live");
}

} // namespace

HostCore::HostCore(PF_FilterProc entryPoint, Options hostOptions)
    : entry(entryPoint), options(std::move(hostOptions)), handles(violations, options.allocations),
      worlds(violations), suites(options, violations), aegp(violations) {}

WorldShape HostCore::Shape(A_long width, A_long height, std::uint32_t format) const {
    return {static_cast<unsigned>(width),
            static_cast<unsigned>(height),
            format,
            options.rowPadding,
            options.quirks.negativeStrides && IsPremiere(),
            options.paddingValue};
}

bool HostCore::Interrupted(const HostCall& call) {
    if (!call.frame)
        return false;
    const unsigned count = ++m_FrameCallbacks;
    return options.interruptAt != 0 && count >= options.interruptAt;
}

void HostCore::FillIn(HostCall& call) {
    PF_InData& in = call.in;
    in.inter = InteractTable();
    in.utils = UtilTable();
    in.effect_ref = reinterpret_cast<PF_ProgPtr>(&call);
    in.pica_basicP = BasicSuite();
    in.quality = PF_Quality_HI;
    in.version.major = options.apiMajor;
    in.version.minor = options.apiMinor >= 0 ? options.apiMinor
                       : IsPremiere()        ? s_PremiereMinor
                                             : s_CurrentMinor;
    in.appl_id = IsPremiere() ? s_PremiereId : s_AfterEffectsId;
    in.num_params = static_cast<A_long>(params.Size());
    in.global_data = globalData;
    if (in.time_scale == 0)
        in.time_scale = 1;
    for (PF_RationalScale* scale : {&in.downsample_x, &in.downsample_y, &in.pixel_aspect_ratio})
        if (scale->den == 0)
            *scale = {1, 1};
    PF_OutData& out = call.out;
    out.global_data = in.global_data;
    out.sequence_data = in.sequence_data;
    out.frame_data = in.frame_data;
}

PF_Err HostCore::Enter(HostCall& call, PF_LayerDef* output, void* extra) {
    const CurrentCall current(call);
    PF_ParamDef** pointers = call.paramPointers.empty() ? nullptr : call.paramPointers.data();
    try {
        return entry(call.command, &call.in, &call.out, pointers, output, extra);
    } catch (...) {
        call.Report("let an exception reach the host");
        return PF_Err_INVALID_CALLBACK;
    }
}

PF_Err HostCore::Send(HostCall& call, PF_LayerDef* output, void* extra) {
    FillIn(call);
    const PF_Handle sequence = call.in.sequence_data;
    void* context = options.currentContext ? options.currentContext() : nullptr;
    const PF_Err err = Enter(call, output, extra);
    CheckAfter(call, context);
    if (!SetsSequenceData(call.command) && !call.flattens && call.out.sequence_data != sequence)
        call.Report("replaced sequence_data");
    return err;
}

void HostCore::CheckAfter(HostCall& call, void* contextBefore) {
    if (options.currentContext && options.currentContext() != contextBefore)
        call.Report("left another GL context current");
    for (const auto& [def, checkout] : call.checkouts) {
        call.Report("did not check parameter " + std::to_string(checkout.index) + " in");
        if (checkout.world)
            worlds.Retire(*checkout.world);
    }
    call.checkouts.clear();
    for (const auto& [handle, count] : call.locks)
        if (count != 0 && handles.IsLive(handle))
            call.Report(count > 0 ? "did not unlock a handle" : "unlocked a handle too often");
    for (const auto& [handle, bytes] : call.readOnly)
        if (handles.Bytes(handle) != bytes)
            call.Report("changed sequence data that it may only read");
    if (std::find(std::begin(call.out.return_msg), std::end(call.out.return_msg), '\0') ==
        std::end(call.out.return_msg))
        call.Report("wrote a message without an end");
    CheckHandle(call, call.out.global_data, "global_data");
    CheckHandle(call, call.out.sequence_data, "sequence_data");
    CheckHandle(call, call.out.frame_data, "frame_data");
}

} // namespace stricthost
