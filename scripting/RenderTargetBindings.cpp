#include "scripting/Bindings.h"

namespace {

ScriptResult InitRenderTarget(std::int32_t width, std::int32_t height, std::int32_t depth) {
    const unsigned created = Context::Current().InitResource<RenderTarget>(
        static_cast<unsigned>(width), static_cast<unsigned>(height), static_cast<unsigned>(depth));
    ReportProblem("SV_initRenderTarget", Context::Current().GetResource<RenderTarget>(created));
    return ScriptResult::Number(created);
}

ScriptResult BlitRenderTarget(RenderTarget& source, RenderTarget& destination, bool flip, bool linear) {
    source.blit(destination, flip, linear);
    return ScriptResult::Bool(true);
}

ScriptResult GetSurfaceDim(const Texture& image) {
    return ScriptResult::Array({static_cast<double>(image.width()), static_cast<double>(image.height()),
                                static_cast<double>(image.depth())});
}

ScriptResult GetSequenceTarget() {
    const Sequence* const sequence = Context::Current().CurrentSequence();
    return ScriptResult::Number(sequence ? sequence->RenderTargetHandle() : 0);
}

ScriptResult GetSequenceTexture() {
    const Sequence* const sequence = Context::Current().CurrentSequence();
    return ScriptResult::Number(sequence ? sequence->InputTextureHandle() : 0);
}

using Live = Arg::Live<RenderTarget>;

constexpr NativeFunction s_Functions[] = {
    Native<InitRenderTarget, Refusal::False, Arg::Int, Arg::Int, Arg::Int>("SV_initRenderTarget"),
    Native<BlitRenderTarget, Refusal::False, Live, Live, Arg::Bool, Arg::Bool>("SV_blitRenderTarget"),
    Native<GetSurfaceDim, Refusal::False, Arg::Image>("SV_getSurfaceDim"),
    Native<GetSequenceTarget, Refusal::False>("SV_getSequenceRT"),
    Native<GetSequenceTexture, Refusal::False>("SV_getSequenceTexture"),
};

} // namespace

std::span<const NativeFunction> RenderTargetBindings() {
    return s_Functions;
}
