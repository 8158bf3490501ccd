#include "stricthost/SmartCallbacks.h"

#include <algorithm>

#include "stricthost/FrameGeometry.h"
#include "stricthost/HostCore.h"
#include "stricthost/Instance.h"
#include "stricthost/PixelFormats.h"
#include "stricthost/SmartState.h"

namespace stricthost {

namespace {

// The current command when it is the expected one; null, with a violation, otherwise.
HostCall* SmartCall(PF_ProgPtr effect, PF_Cmd command, const char* what) {
    HostCall* call = HostCall::From(effect, what);
    if (!call || (call->command == command && call->smart))
        return call;
    call->Report(std::string("called ") + what + " out of turn");
    return nullptr;
}

PF_LRect LayerRect(const HostCall& call, A_long index, HostTime time) {
    if (index == 0)
        return InputRect(call.frame->spec);
    const LayerValue picture = call.instance->LayerAt(index, time);
    if (!picture)
        return {};
    return {0, 0, static_cast<A_long>(picture->width), static_cast<A_long>(picture->height)};
}

bool ReservedIsZero(const PF_RenderRequest& request) {
    const auto zero = [](auto value) { return value == 0; };
    return std::all_of(std::begin(request.unused), std::end(request.unused), zero) &&
           std::all_of(std::begin(request.reserved), std::end(request.reserved), zero);
}

PF_Err CheckoutLayer(PF_ProgPtr effect, PF_ParamIndex index, A_long id, const PF_RenderRequest* request,
                     A_long time, A_long, A_u_long scale, PF_CheckoutResult* result) {
    HostCall* call = SmartCall(effect, PF_Cmd_SMART_PRE_RENDER, "checkout_layer");
    if (!call || !request || !result)
        return PF_Err_BAD_CALLBACK_PARAM;
    if (call->host.Interrupted(*call))
        return PF_Interrupt_CANCEL;
    const bool exists = index >= 0 && index < static_cast<A_long>(call->host.params.Size());
    if (!exists || call->host.params[static_cast<std::size_t>(index)].type != PF_Param_LAYER) {
        call->Report("checked out parameter " + std::to_string(index) + " as a layer");
        return PF_Err_INVALID_INDEX;
    }
    if (id < 0 || call->smart->layers.count(id) != 0) {
        call->Report("used the checkout id " + std::to_string(id) + " twice, or it is negative");
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    if (!ReservedIsZero(*request))
        call->Report("set reserved fields of a render request");
    if (scale == 0)
        call->Report("checked out a layer at a time without a scale");
    const PF_LRect whole = LayerRect(*call, index, {time, scale});
    *result = {};
    result->max_result_rect = whole;
    result->result_rect = Intersection(request->rect, whole);
    result->par = call->frame->spec.pixelAspect;
    result->ref_width = call->in.width;
    result->ref_height = call->in.height;
    call->smart->layers[id] = {index, {time, scale}, result->result_rect};
    return PF_Err_NONE;
}

PF_Err GuidMixIn(PF_ProgPtr effect, A_u_long size, const void* bytes) {
    HostCall* call = SmartCall(effect, PF_Cmd_SMART_PRE_RENDER, "GuidMixInPtr");
    return call && (bytes || size == 0) ? PF_Err_NONE : PF_Err_BAD_CALLBACK_PARAM;
}

// Makes a world of exactly the part of the layer that the plug-in requested; null when that is empty.
World* CreatePart(HostCall& call, const SmartState::Layer& layer, A_long id) {
    if (IsEmpty(layer.rect))
        return nullptr;
    const LayerValue own = layer.index == 0 ? nullptr : call.instance->LayerAt(layer.index, layer.time);
    const fxhost::Picture& picture = layer.index == 0 ? *call.frame->spec.input : *own;
    const PF_LRect whole = LayerRect(call, layer.index, layer.time);
    const WorldShape shape = call.host.Shape(layer.rect.right - layer.rect.left,
                                             layer.rect.bottom - layer.rect.top, FormatOfBits(picture.depth));
    World& world = call.host.worlds.Create(shape, "the layer of checkout " + std::to_string(id));
    world.Load(picture, layer.rect.left - whole.left, layer.rect.top - whole.top);
    world.Def().origin_x = layer.rect.left;
    world.Def().origin_y = layer.rect.top;
    world.Def().pix_aspect_ratio = call.frame->spec.pixelAspect;
    return &world;
}

PF_Err CheckoutLayerPixels(PF_ProgPtr effect, A_long id, PF_EffectWorld** pixels) {
    HostCall* call = SmartCall(effect, PF_Cmd_SMART_RENDER, "checkout_layer_pixels");
    if (!call || !pixels)
        return PF_Err_BAD_CALLBACK_PARAM;
    const auto found = call->smart->layers.find(id);
    if (found == call->smart->layers.end() || found->second.taken) {
        call->Report("took the pixels of checkout " + std::to_string(id) + ", which it " +
                     (found == call->smart->layers.end() ? "never made" : "took before"));
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    if (call->host.Interrupted(*call))
        return PF_Interrupt_CANCEL;
    found->second.taken = true;
    ++call->smart->layersTaken;
    World* world = CreatePart(*call, found->second, id);
    *pixels = world ? &world->Def() : nullptr;
    call->smart->worlds.push_back(std::make_unique<ReadOnlyWorld>(*call, world));
    return PF_Err_NONE;
}

PF_Err CheckinLayerPixels(PF_ProgPtr effect, A_long id) {
    HostCall* call = SmartCall(effect, PF_Cmd_SMART_RENDER, "checkin_layer_pixels");
    if (!call)
        return PF_Err_BAD_CALLBACK_PARAM;
    const auto found = call->smart->layers.find(id);
    if (found != call->smart->layers.end() && found->second.taken)
        return PF_Err_NONE; // the world lives until the end of the command
    call->Report("gave back the pixels of checkout " + std::to_string(id) + ", which it does not hold");
    return PF_Err_BAD_CALLBACK_PARAM;
}

PF_Err CheckoutOutput(PF_ProgPtr effect, PF_EffectWorld** output) {
    HostCall* call = SmartCall(effect, PF_Cmd_SMART_RENDER, "checkout_output");
    if (!call || !output)
        return PF_Err_BAD_CALLBACK_PARAM;
    if (call->host.Interrupted(*call))
        return PF_Interrupt_CANCEL;
    SmartState& state = *call->smart;
    if (state.outputTaken)
        call->Report("checked out the output twice");
    if (!state.layers.empty() && state.layersTaken == 0)
        call->Report("checked out the output before any input");
    state.outputTaken = true;
    *output = state.output ? &state.outputDef : nullptr;
    return PF_Err_NONE;
}

} // namespace

PF_PreRenderCallbacks PreRenderTable() {
    return {CheckoutLayer, GuidMixIn};
}

PF_SmartRenderCallbacks SmartRenderTable() {
    return {CheckoutLayerPixels, CheckinLayerPixels, CheckoutOutput};
}

} // namespace stricthost
