#include "context/Context.h"
#include "scripting/Bindings.h"

namespace {

ScriptResult InitRenderTarget(ScriptCall& call) {
    const auto width = static_cast<unsigned>(call.Int(0));
    const auto height = static_cast<unsigned>(call.Int(1));
    const auto depth = static_cast<unsigned>(call.Int(2));
    return ScriptResult::Number(Context::Current().InitResource<RenderTarget>(width, height, depth));
}

// A render target that can be drawn into, or null.
RenderTarget* UsableTarget(std::uint32_t handle) {
    if ((handle & Context::TagMask) != RenderTarget::Tag)
        return nullptr;
    RenderTarget& target = Context::Current().GetResource<RenderTarget>(handle);
    return target.usable() ? &target : nullptr;
}

ScriptResult BlitRenderTarget(ScriptCall& call) {
    const std::uint32_t sourceHandle = call.Handle(0);
    const std::uint32_t destinationHandle = call.Handle(1);
    const bool flip = call.Bool(2);
    const bool linear = call.Bool(3);
    RenderTarget* const source = UsableTarget(sourceHandle);
    RenderTarget* const destination = UsableTarget(destinationHandle);
    if (!source || !destination)
        return ScriptResult::Bool(false);
    source->blit(*destination, flip, linear);
    return ScriptResult::Bool(true);
}

ScriptResult GetSurfaceDim(ScriptCall& call) {
    const std::uint32_t handle = call.Handle(0);
    const std::uint32_t tag = handle & Context::TagMask;
    const Texture* texture = nullptr;
    if (tag == RenderTarget::Tag)
        texture = UsableTarget(handle);
    else if (tag == Texture::Tag)
        texture = &Context::Current().GetResource<Texture>(handle);
    if (!texture || texture->id() == 0)
        return ScriptResult::Bool(false);
    return ScriptResult::Array({static_cast<double>(texture->width()), static_cast<double>(texture->height()),
                                static_cast<double>(texture->depth())});
}

ScriptResult GetSequenceTarget(ScriptCall&) {
    const Sequence* const sequence = Context::Current().CurrentSequence();
    return ScriptResult::Number(sequence ? sequence->RenderTargetHandle() : 0);
}

ScriptResult GetSequenceTexture(ScriptCall&) {
    const Sequence* const sequence = Context::Current().CurrentSequence();
    return ScriptResult::Number(sequence ? sequence->InputTextureHandle() : 0);
}

constexpr NativeFunction s_Functions[] = {
    {"SV_initRenderTarget", Trampoline<InitRenderTarget>, 3},
    {"SV_blitRenderTarget", Trampoline<BlitRenderTarget>, 4},
    {"SV_getSurfaceDim", Trampoline<GetSurfaceDim>, 1},
    {"SV_getSequenceRT", Trampoline<GetSequenceTarget>, 0},
    {"SV_getSequenceTexture", Trampoline<GetSequenceTexture>, 0},
};

} // namespace

std::span<const NativeFunction> RenderTargetBindings() {
    return s_Functions;
}
