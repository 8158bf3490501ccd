#include "context/Context.h"
#include "parameters/ParameterTraits.h"
#include "scripting/Bindings.h"

namespace {

// The parameter with that handle; Parameter::invalid for handles of other types.
Parameter& FindParameter(std::uint32_t handle) {
    if ((handle & Context::TagMask) != Parameter::Tag)
        return Parameter::invalid;
    return Context::Current().GetResource<Parameter>(handle);
}

constexpr unsigned s_PlaceholderSize = 2; // a layer's texture until the host uploads pixels
constexpr unsigned s_PlaceholderDepth = 8;

ScriptResult InitParam(ScriptCall& call) {
    if (call.Count() < 2)
        return ScriptResult::Number(0);
    const char* const name = call.Text(0);
    const auto type = static_cast<Parameter::Type>(call.Int(1));
    const char* const label = call.Count() > 2 ? call.Text(2) : "";
    Context& context = Context::Current();
    const unsigned handle = context.InitResource<Parameter>(name, type, label);
    if (handle == 0)
        return ScriptResult::Number(0);
    Parameter& parameter = *context.FindOwn<Parameter>(handle); // the current sequence has no copy yet
    if (type == Parameter::LAYER)
        parameter.texture =
            context.InitResource<Texture>(s_PlaceholderSize, s_PlaceholderSize, s_PlaceholderDepth);
    parameter.handle = handle;
    return ScriptResult::Number(handle);
}

ScriptResult GetParamValue(ScriptCall& call) {
    const Parameter& parameter = FindParameter(call.Handle(0));
    if (parameter.handle == 0)
        return ScriptResult::Bool(false);
    const Parameter::Value& value = parameter.value;
    const ParameterTraits& traits = TraitsOf(parameter.type);
    switch (traits.components) {
    case 1:
        return ScriptResult::Number(value.Float(0));
    case 2:
        return ScriptResult::Array({value.Float(0), value.Float(1)});
    case 3:
        return ScriptResult::Array({value.Float(0), value.Float(1), value.Float(2)});
    case 4:
        return ScriptResult::Array({value.Float(0), value.Float(1), value.Float(2), value.Float(3)});
    default:
        break;
    }
    if (traits.isTexture())
        return ScriptResult::Number(static_cast<std::int32_t>(parameter.texture));
    if (traits.isInteger())
        return ScriptResult::Number(value.Int(0));
    return ScriptResult::FirstArgument(); // paths, groups and unknown types carry no value
}

ScriptResult SetParamValue(ScriptCall& call) {
    const std::uint32_t handle = call.Handle(0);
    const Parameter& described = FindParameter(handle);
    if (described.handle == 0)
        return ScriptResult::Bool(false);
    const ParameterTraits& traits = TraitsOf(described.type);
    if ((traits.isArray() && !call.IsArray(1)) || traits.content == ParameterTraits::Content::None)
        return ScriptResult::Bool(true);
    float numbers[4] = {};
    int integer = 0;
    if (traits.isArray())
        call.Floats(1, numbers, traits.components);
    else if (traits.isFloat())
        numbers[0] = call.Float(1);
    else
        integer = call.Int(1);
    Parameter& parameter = FindParameter(handle);
    if (parameter.handle == 0)
        return ScriptResult::Bool(false);
    for (unsigned i = 0; i < traits.components; ++i)
        parameter.value.SetFloat(i, numbers[i]);
    if (traits.isTexture())
        parameter.texture = static_cast<std::uint32_t>(integer);
    else if (traits.isInteger())
        parameter.value.SetInt(0, integer);
    return ScriptResult::Bool(true);
}

ScriptResult SetParamMinMax(ScriptCall& call) {
    const std::uint32_t handle = call.Handle(0);
    const float low = call.Float(1);
    const float high = call.Float(2);
    Parameter& parameter = FindParameter(handle);
    if (parameter.handle == 0)
        return ScriptResult::Bool(false);
    if (parameter.type == Parameter::FLOAT) {
        parameter.min.SetFloat(0, low);
        parameter.max.SetFloat(0, high);
    }
    return ScriptResult::Bool(true);
}

ScriptResult SetParamChoices(ScriptCall& call) {
    const std::uint32_t handle = call.Handle(0);
    const char* const choices = call.Text(1);
    Parameter& parameter = FindParameter(handle);
    if (parameter.handle == 0 || !choices)
        return ScriptResult::Bool(false);
    parameter.choices = choices;
    std::uint32_t bars = 0;
    for (const char c : parameter.choices)
        bars += c == '|';
    parameter.choiceCount = bars == 0 ? 0 : bars + 1; // a single entry counts as none
    return ScriptResult::Bool(true);
}

ScriptResult SetParamPrecision(ScriptCall& call) {
    const std::uint32_t handle = call.Handle(0);
    const auto precision = static_cast<std::uint32_t>(call.Int(1));
    Parameter& parameter = FindParameter(handle);
    if (parameter.handle == 0)
        return ScriptResult::Bool(false);
    parameter.flags = precision << Parameter::PrecisionShift | (parameter.flags & ~Parameter::PrecisionMask);
    return ScriptResult::Bool(true);
}

ScriptResult SetParamEnabled(ScriptCall& call) {
    const std::uint32_t handle = call.Handle(0);
    const bool enabled = call.Int(1) != 0;
    Parameter& parameter = FindParameter(handle);
    if (parameter.handle == 0)
        return ScriptResult::Bool(false);
    parameter.flags &= ~std::uint32_t{Parameter::Disabled};
    if (!enabled)
        parameter.flags |= Parameter::Disabled;
    return ScriptResult::Bool(true);
}

ScriptResult SetParamFlags(ScriptCall& call) {
    const std::uint32_t handle = call.Handle(0);
    const std::uint32_t flags = call.UInt(1);
    Parameter& parameter = FindParameter(handle);
    if (parameter.handle == 0)
        return ScriptResult::Bool(false);
    parameter.flags = flags;
    return ScriptResult::Bool(true);
}

ScriptResult GetParamFlags(ScriptCall& call) {
    const Parameter& parameter = FindParameter(call.Handle(0));
    if (parameter.handle == 0)
        return ScriptResult::Bool(false);
    return ScriptResult::Number(static_cast<std::int32_t>(parameter.flags));
}

constexpr NativeFunction s_Functions[] = {
    {"SV_initParam", Trampoline<InitParam>, DUK_VARARGS},
    {"SV_getParamValue", Trampoline<GetParamValue>, 1},
    {"SV_setParamValue", Trampoline<SetParamValue>, 2},
    {"SV_setParamMinMax", Trampoline<SetParamMinMax>, 3},
    {"SV_setParamChoices", Trampoline<SetParamChoices>, 2},
    {"SV_setParamPrecision", Trampoline<SetParamPrecision>, 2},
    {"SV_setParamEnabled", Trampoline<SetParamEnabled>, 2},
    {"SV_setParamFlags", Trampoline<SetParamFlags>, 2},
    {"SV_getParamFlags", Trampoline<GetParamFlags>, 1},
};

} // namespace

std::span<const NativeFunction> ParameterBindings() {
    return s_Functions;
}
