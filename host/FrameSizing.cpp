#include "engine/IPlugin.h"
#include "host/CommandGuard.h"
#include "host/Commands.h"
#include "host/CompDimensions.h"
#include "host/Geometry.h"
#include "host/HostHandle.h"
#include "host/ParameterBridge.h"
#include "host/Sequence.h"

// The commands that ask the engine for the size of the output.
namespace Adapter {

namespace {

// Reads the composition's size into the record, and selects instance and composition in the engine.
void SelectForSizing(CommandCall& call, SequenceRecord& record) {
    const auto read = IsPremiere(*call.in) ? GetCompDimensionsPr : GetCompDimensions;
    read(call.in, record.compWidth, record.compHeight, record.compPixelAspect);
    SelectSequence(call.engine, record.engineSequence);
    SelectComposition(call.engine, record.compWidth, record.compHeight, record.compPixelAspect);
}

// Takes the frame lock, which the caller releases, and passes the frame's parameters to the engine.
void PrepareSizing(CommandCall& call, SequenceRecord& record) {
    if (TakesLockForSizing(*call.in))
        call.guard.LockFrame();
    SelectForSizing(call, record);
    UpdateParametersValues(call, false);
}

// The size of the output that the engine chooses for an input of the given size. Without instance data the
// size is kept, because the frame will be a copy of the input.
Size AskEngine(CommandCall& call, const SequenceRecord* record, Size input) {
    if (!record)
        return input;
    Size wanted = {};
    call.engine.preRender(input.width, input.height, wanted.width, wanted.height);
    return wanted;
}

// Scales the engine's size to the host's resolution. The pixel aspect ratio applies only when the engine
// changed the size.
Size ScaledToHost(const PF_InData& in, Size wanted, bool resized) {
    Size scaled = {Scaled(wanted.width, in.downsample_x), Scaled(wanted.height, in.downsample_y)};
    if (resized)
        scaled.width = Scaled(scaled.width, in.pixel_aspect_ratio);
    return scaled;
}

// Resizes the output around the centre of the input. Halves are rounded down.
void ResizeOutput(PF_OutData& out, Size size, Size input) {
    const auto offset = [](std::uint32_t outer, std::uint32_t inner) {
        return static_cast<A_long>(outer / 2) - static_cast<A_long>(inner / 2);
    };
    out.width = static_cast<A_long>(size.width);
    out.height = static_cast<A_long>(size.height);
    out.origin.h = offset(size.width, input.width);
    out.origin.v = offset(size.height, input.height);
}

PF_Err PublishFrameData(CommandCall& call, Size size) {
    AEGP_SuiteHandler suites(call.in->pica_basicP);
    HostHandle handle(suites, sizeof(FrameData));
    auto* data = static_cast<FrameData*>(handle.Data());
    if (!data)
        return PF_Err_OUT_OF_MEMORY;
    *data = {size.width, size.height};
    handle.HandOver(call.out->frame_data);
    return PF_Err_NONE;
}

PF_Err SizeForPremiere(CommandCall& call, const SequenceRecord* record) {
    const PF_InData& in = *call.in;
    const Size input = {Extent(in.width), Extent(in.height)};
    const Size wanted = AskEngine(call, record, input);
    const bool resized = wanted != input;
    const Size size = ScaledToHost(in, wanted, resized);
    if (resized && (Extent(call.out->width) < size.width || Extent(call.out->height) < size.height))
        ResizeOutput(*call.out, size, ScaledToHost(in, input, true));
    return PublishFrameData(call, size);
}

PF_Err SizeForAfterEffects(CommandCall& call, const SequenceRecord* record) {
    if (!record)
        return PF_Err_NONE;
    if (!call.params || !call.params[0])
        return PF_Err_BAD_CALLBACK_PARAM;
    const PF_LayerDef& layer = call.params[0]->u.ld;
    const Size input = {Extent(layer.width), Extent(layer.height)};
    const Size wanted = AskEngine(call, record, input);
    const Size size = ScaledToHost(*call.in, wanted, wanted != input);
    if (size != input)
        ResizeOutput(*call.out, size, input);
    return PF_Err_NONE;
}

// The id of the first checkout of the input layer, which only provides the layer's extent.
constexpr A_long s_SizingCheckout = 0x123455;

PF_RenderRequest EmptyRequest(const PF_RenderRequest& hostRequest) {
    PF_RenderRequest request = hostRequest;
    request.rect = {};
    request.channel_mask = PF_ChannelMask_ARGB;
    request.preserve_rgb_of_zero_alpha = 1;
    return request;
}

PF_Err CheckoutInput(CommandCall& call, const PF_PreRenderExtra& extra, A_long id,
                     const PF_RenderRequest& request, PF_CheckoutResult& result) {
    const PF_InData& in = *call.in;
    return extra.cb->checkout_layer(in.effect_ref, 0, id, &request, in.current_time, in.time_step,
                                    in.time_scale, &result);
}

void KeepSize(const PF_LRect& input, const PF_LRect& requested, PF_PreRenderOutput& output) {
    UnionLRect(&input, &output.result_rect);
    UnionLRect(&input, &output.max_result_rect);
    if (!LiesStrictlyInside(input, requested))
        output.flags = PF_RenderOutputFlag_RETURNS_EXTRA_PIXELS;
}

// Centres the new size in the input's rectangle. Halves are rounded down.
void ChangeSize(const PF_LRect& input, Size inputSize, Size wanted, PF_PreRenderOutput& output) {
    const auto start = [](A_long from, std::uint32_t inner, std::uint32_t outer) {
        return std::int64_t{from} + inner / 2 - std::int64_t{outer / 2};
    };
    const std::int64_t left = start(input.left, inputSize.width, wanted.width);
    const std::int64_t top = start(input.top, inputSize.height, wanted.height);
    PF_LRect& rect = output.result_rect;
    rect = {Clamped(left), Clamped(top), Clamped(left + wanted.width), Clamped(top + wanted.height)};
    UnionLRect(&rect, &output.max_result_rect);
    output.flags = PF_RenderOutputFlag_RETURNS_EXTRA_PIXELS;
}

} // namespace

PF_Err FrameSetup(CommandCall& call) {
    call.out->frame_data = nullptr;
    SequenceRecord* record = FindOwnRecord(call);
    if (record)
        PrepareSizing(call, *record);
    const PF_Err err =
        IsPremiere(*call.in) ? SizeForPremiere(call, record) : SizeForAfterEffects(call, record);
    call.guard.ReleaseFrame();
    return err;
}

PF_Err FrameSetdown(CommandCall& call) {
    if (!call.out->frame_data)
        return PF_Err_NONE;
    AEGP_SuiteHandler suites(call.in->pica_basicP);
    suites.HandleSuite1()->host_dispose_handle(call.out->frame_data);
    call.out->frame_data = nullptr;
    return PF_Err_NONE;
}

PF_Err SmartPreRender(CommandCall& call) {
    const auto* extra = static_cast<const PF_PreRenderExtra*>(call.extra);
    if (!extra)
        return PF_Err_BAD_CALLBACK_PARAM;
    const PF_RenderRequest& hostRequest = extra->input->output_request;
    PF_RenderRequest request = EmptyRequest(hostRequest);
    PF_CheckoutResult result = {};
    PF_Err err = CheckoutInput(call, *extra, s_SizingCheckout, request, result);

    // The host needs rectangles even after a failed checkout.
    const PF_LRect input = result.max_result_rect;
    const Size inputSize = SizeOf(input);
    SequenceRecord* record = FindOwnRecord(call);
    if (record)
        PrepareSizing(call, *record);
    const Size wanted = AskEngine(call, record, inputSize);
    if (wanted == inputSize)
        KeepSize(input, hostRequest.rect, *extra->output);
    else
        ChangeSize(input, inputSize, wanted, *extra->output);

    request.rect = input;
    if (err == PF_Err_NONE)
        err = CheckoutInput(call, *extra, SmartInputCheckout, request, result);
    call.guard.ReleaseFrame();
    return err;
}

} // namespace Adapter
