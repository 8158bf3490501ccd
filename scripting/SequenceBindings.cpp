#include "gpu/GLLimits.h"
#include "scripting/Bindings.h"
#include "scripting/Scripting.h"

namespace {

constexpr std::uint32_t s_FirstTag = 0x01000000u; // smaller values have no tag

ScriptResult GetTime() {
    const Sequence* const sequence = Context::Current().CurrentSequence();
    return ScriptResult::Number(sequence ? sequence->Time() : 0.0);
}

ScriptResult Release(std::uint32_t handle) {
    const Sequence* const sequence = Context::Current().CurrentSequence();
    if (sequence && handle != 0 && handle == sequence->RenderTargetHandle())
        Scripting::Instance().Report(
            "SV_release of the handle of SV_getSequenceRT: without its render target "
            "there is no frame");
    if (handle >= s_FirstTag)
        Context::Current().DeleteResource(handle);
    return ScriptResult::Bool(true);
}

// Only sizes that a render target can have are stored.
ScriptResult SetOutputExtent(std::int32_t width, std::int32_t height) {
    const auto limit = static_cast<std::int32_t>(GLLimits::MaxTextureSize());
    if (width < 0 || height < 0 || (limit != 0 && (width > limit || height > limit)))
        Scripting::Instance().Report(
            "SV_setOutputExtent(" + std::to_string(width) + ", " + std::to_string(height) +
            ") is ignored: width and height must be from 0 to " + std::to_string(limit) + " pixels");
    else if (Sequence* const sequence = Context::Current().CurrentSequence())
        sequence->SetOutputExtent(static_cast<unsigned>(width), static_cast<unsigned>(height));
    return ScriptResult::Bool(true);
}

ScriptResult GetContextExtent() {
    const Context& context = Context::Current();
    return ScriptResult::Array({static_cast<double>(context.CompositionWidth()),
                                static_cast<double>(context.CompositionHeight()),
                                context.CompositionScale()});
}

ScriptResult GetInputOrigin() {
    const Sequence* const sequence = Context::Current().CurrentSequence();
    return sequence ? ScriptResult::Array({static_cast<double>(sequence->InputOriginX()),
                                           static_cast<double>(sequence->InputOriginY())})
                    : ScriptResult::Array({0.0, 0.0});
}

constexpr NativeFunction s_Functions[] = {
    Native<GetTime, Refusal::False>("SV_getTime"),
    Native<Release, Refusal::False, Arg::Handle>("SV_release"),
    Native<SetOutputExtent, Refusal::False, Arg::Int, Arg::Int>("SV_setOutputExtent"),
    Native<GetContextExtent, Refusal::False>("SV_getContextExtent"),
    Native<GetInputOrigin, Refusal::False>("SV_getInputOrigin"),
};

} // namespace

std::span<const NativeFunction> SequenceBindings() {
    return s_Functions;
}
