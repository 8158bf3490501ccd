#include "context/Context.h"
#include "scripting/Bindings.h"

namespace {

constexpr std::uint32_t s_FirstTag = 0x01000000u; // smaller values carry no type and are no handles

ScriptResult GetTime(ScriptCall&) {
    const Sequence* const sequence = Context::Current().CurrentSequence();
    return ScriptResult::Number(sequence ? sequence->Time() : 0.0);
}

ScriptResult Release(ScriptCall& call) {
    const std::uint32_t handle = call.Handle(0);
    if (handle >= s_FirstTag)
        Context::Current().DeleteResource(handle);
    return ScriptResult::Bool(true);
}

ScriptResult SetOutputExtent(ScriptCall& call) {
    const auto width = static_cast<unsigned>(call.Int(0));
    const auto height = static_cast<unsigned>(call.Int(1));
    if (Sequence* const sequence = Context::Current().CurrentSequence())
        sequence->SetOutputExtent(width, height);
    return ScriptResult::Bool(true);
}

ScriptResult GetContextExtent(ScriptCall&) {
    const Context& context = Context::Current();
    return ScriptResult::Array({static_cast<double>(context.CompositionWidth()),
                                static_cast<double>(context.CompositionHeight()),
                                context.CompositionScale()});
}

ScriptResult GetInputOrigin(ScriptCall&) {
    const Sequence* const sequence = Context::Current().CurrentSequence();
    return sequence ? ScriptResult::Array({static_cast<double>(sequence->InputOriginX()),
                                           static_cast<double>(sequence->InputOriginY())})
                    : ScriptResult::Array({0.0, 0.0});
}

constexpr NativeFunction s_Functions[] = {
    {"SV_getTime", Trampoline<GetTime>, 0},
    {"SV_release", Trampoline<Release>, 1},
    {"SV_setOutputExtent", Trampoline<SetOutputExtent>, 2},
    {"SV_getContextExtent", Trampoline<GetContextExtent>, 0},
    {"SV_getInputOrigin", Trampoline<GetInputOrigin>, 0},
};

} // namespace

std::span<const NativeFunction> SequenceBindings() {
    return s_Functions;
}
