#include "AEGP_SuiteHandler.h"
#include "host/Commands.h"
#include "host/CompDimensions.h"
#include "host/HostHandle.h"
#include "host/HostKind.h"
#include "host/ParameterBridge.h"
#include "host/Scaling.h"
#include "host/SequenceRecord.h"

namespace Adapter {

namespace {

struct Size {
    std::uint32_t width;
    std::uint32_t height;
    bool operator==(const Size&) const = default;
};

Size AskEngine(Call& call, Size input) {
    Size wanted = {};
    call.engine.preRender(input.width, input.height, wanted.width, wanted.height);
    return wanted;
}

// What the engine wants, at the host's resolution. The pixel aspect counts only when the engine changed
// the size.
Size ScaledToHost(const PF_InData& in, Size wanted, bool resized) {
    Size scaled = {Scaled(wanted.width, in.downsample_x), Scaled(wanted.height, in.downsample_y)};
    if (resized)
        scaled.width = Scaled(scaled.width, in.pixel_aspect_ratio);
    return scaled;
}

// Resizes the output around the middle of the input; halves are cut.
void ResizeOutput(PF_OutData& out, Size size, Size input) {
    const auto offset = [](std::uint32_t outer, std::uint32_t inner) {
        return static_cast<A_long>(outer / 2) - static_cast<A_long>(inner / 2);
    };
    out.width = static_cast<A_long>(size.width);
    out.height = static_cast<A_long>(size.height);
    out.origin.h = offset(size.width, input.width);
    out.origin.v = offset(size.height, input.height);
}

PF_Err PublishFrameData(Call& call, Size size) {
    AEGP_SuiteHandler suites(call.in->pica_basicP);
    HostHandle handle(suites, sizeof(FrameData));
    auto* data = static_cast<FrameData*>(handle.Data());
    if (!data)
        return PF_Err_OUT_OF_MEMORY;
    *data = {size.width, size.height};
    handle.HandOver(call.out->frame_data);
    return PF_Err_NONE;
}

PF_Err SizeForPremiere(Call& call) {
    const PF_InData& in = *call.in;
    const Size input = {Extent(in.width), Extent(in.height)};
    const Size wanted = AskEngine(call, input);
    const bool resized = wanted != input;
    const Size size = ScaledToHost(in, wanted, resized);
    if (resized && (Extent(call.out->width) < size.width || Extent(call.out->height) < size.height))
        ResizeOutput(*call.out, size, ScaledToHost(in, input, true));
    return PublishFrameData(call, size);
}

PF_Err SizeForAfterEffects(Call& call) {
    if (!call.params || !call.params[0])
        return PF_Err_BAD_CALLBACK_PARAM;
    const PF_LayerDef& layer = call.params[0]->u.ld;
    const Size input = {Extent(layer.width), Extent(layer.height)};
    const Size wanted = AskEngine(call, input);
    const Size size = ScaledToHost(*call.in, wanted, wanted != input);
    if (size != input)
        ResizeOutput(*call.out, size, input);
    return PF_Err_NONE;
}

} // namespace

PF_Err FrameSetup(Call& call) {
    call.out->frame_data = nullptr;
    SequenceRecord* record = FindRecord(*call.in);
    if (!record)
        return PF_Err_NONE; // the frame will be a copy of the input
    if (TakesLockForSizing(*call.in))
        call.guard.LockFrame();
    SelectForSizing(call.engine, call.in, *record);
    UpdateParametersValues(call.in, call.out, call.params, false);
    const PF_Err err = IsPremiere(*call.in) ? SizeForPremiere(call) : SizeForAfterEffects(call);
    call.guard.ReleaseFrame();
    return err;
}

PF_Err FrameSetdown(Call& call) {
    if (!call.out->frame_data)
        return PF_Err_NONE;
    AEGP_SuiteHandler suites(call.in->pica_basicP);
    suites.HandleSuite1()->host_dispose_handle(call.out->frame_data);
    call.out->frame_data = nullptr;
    return PF_Err_NONE;
}

} // namespace Adapter
