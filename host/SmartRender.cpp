#include "host/Commands.h"
#include "host/CompDimensions.h"
#include "host/HostKind.h"
#include "host/ParameterBridge.h"
#include "host/Rects.h"
#include "host/RenderBridge.h"
#include "host/Scaling.h"
#include "host/SequenceRecord.h"

namespace Adapter {

namespace {

// The host's ids for the two checkouts of the input layer: the first only yields its extent.
constexpr A_long s_SizingCheckout = 0x123455;
constexpr A_long s_PixelsCheckout = 0x123456;

PF_RenderRequest EmptyRequest(const PF_RenderRequest& hostRequest) {
    PF_RenderRequest request = hostRequest;
    request.rect = {};
    request.channel_mask = PF_ChannelMask_ARGB;
    request.preserve_rgb_of_zero_alpha = 1;
    return request;
}

PF_Err CheckoutInput(Call& call, const PF_PreRenderExtra& extra, A_long id, const PF_RenderRequest& request,
                     PF_CheckoutResult& result) {
    const PF_InData& in = *call.in;
    return extra.cb->checkout_layer(in.effect_ref, 0, id, &request, in.current_time, in.time_step,
                                    in.time_scale, &result);
}

struct Size {
    std::uint32_t width;
    std::uint32_t height;
    bool operator==(const Size&) const = default;
};

// What the engine makes of the input's size; without an instance, the same.
Size AskEngine(Call& call, Size input) {
    SequenceRecord* record = FindRecord(*call.in);
    if (!record)
        return input;
    if (TakesLockForSizing(*call.in))
        call.guard.LockFrame();
    SelectForSizing(call.engine, call.in, *record);
    UpdateParametersValues(call.in, call.out, call.params, false);
    Size wanted = {};
    call.engine.preRender(input.width, input.height, wanted.width, wanted.height);
    return wanted;
}

void KeepSize(const PF_LRect& input, const PF_LRect& requested, PF_PreRenderOutput& output) {
    UnionLRect(&input, &output.result_rect);
    UnionLRect(&input, &output.max_result_rect);
    if (!LiesStrictlyInside(input, requested))
        output.flags = PF_RenderOutputFlag_RETURNS_EXTRA_PIXELS;
}

// The new size around the middle of the input; halves are cut.
void ChangeSize(const PF_LRect& input, Size inputSize, Size wanted, PF_PreRenderOutput& output) {
    const auto start = [](A_long from, std::uint32_t inner, std::uint32_t outer) {
        return from + static_cast<A_long>(inner / 2) - static_cast<A_long>(outer / 2);
    };
    PF_LRect& rect = output.result_rect;
    rect.left = start(input.left, inputSize.width, wanted.width);
    rect.top = start(input.top, inputSize.height, wanted.height);
    rect.right = rect.left + static_cast<A_long>(wanted.width);
    rect.bottom = rect.top + static_cast<A_long>(wanted.height);
    UnionLRect(&rect, &output.max_result_rect);
    output.flags = PF_RenderOutputFlag_RETURNS_EXTRA_PIXELS;
}

} // namespace

PF_Err SmartPreRender(Call& call) {
    const auto* extra = static_cast<const PF_PreRenderExtra*>(call.extra);
    if (!extra)
        return PF_Err_BAD_CALLBACK_PARAM;
    const PF_RenderRequest& hostRequest = extra->input->output_request;
    PF_RenderRequest request = EmptyRequest(hostRequest);
    PF_CheckoutResult result = {};
    PF_Err err = CheckoutInput(call, *extra, s_SizingCheckout, request, result);

    // The engine is asked even after a failed checkout: the host still wants rectangles.
    const PF_LRect input = result.max_result_rect;
    const Size inputSize = {Extent(input.right - input.left), Extent(input.bottom - input.top)};
    const Size wanted = AskEngine(call, inputSize);
    if (wanted == inputSize)
        KeepSize(input, hostRequest.rect, *extra->output);
    else
        ChangeSize(input, inputSize, wanted, *extra->output);

    request.rect = input;
    if (err == PF_Err_NONE)
        err = CheckoutInput(call, *extra, s_PixelsCheckout, request, result);
    call.guard.ReleaseFrame();
    return err;
}

PF_Err SmartRender(Call& call) {
    const auto* extra = static_cast<const PF_SmartRenderExtra*>(call.extra);
    if (!extra)
        return PF_Err_BAD_CALLBACK_PARAM;
    PF_EffectWorld* input = nullptr;
    PF_EffectWorld* output = nullptr;
    if (const PF_Err err = extra->cb->checkout_layer_pixels(call.in->effect_ref, s_PixelsCheckout, &input);
        err != PF_Err_NONE)
        return err;
    if (const PF_Err err = extra->cb->checkout_output(call.in->effect_ref, &output); err != PF_Err_NONE)
        return err;
    if (!output)
        return PF_Err_NONE; // nothing was asked for
    PF_EffectWorld empty = {};
    return Render(call.in, call.out, call.params, output, input ? input : &empty);
}

} // namespace Adapter
