#include <algorithm>

#include "parameters/ParameterTraits.h"
#include "scripting/Bindings.h"

namespace {

constexpr unsigned s_PlaceholderSize = 2; // of a layer's texture until the host uploads pixels
constexpr unsigned s_PlaceholderDepth = 8;

ScriptResult InitParam(const std::string& name, std::int32_t typeCode, const std::string& label) {
    const auto type = static_cast<Parameter::Type>(typeCode);
    Context& context = Context::Current();
    const unsigned handle = context.InitResource<Parameter>(name, type, label);
    Parameter* const parameter = context.FindOwn<Parameter>(handle); // the sequence has no copy yet
    if (!parameter)
        return ScriptResult::Number(0);
    if (type == Parameter::LAYER)
        parameter->texture =
            context.InitResource<Texture>(s_PlaceholderSize, s_PlaceholderSize, s_PlaceholderDepth);
    parameter->handle = handle;
    return ScriptResult::Number(handle);
}

ScriptResult FloatsOf(const Parameter::Value& value, unsigned count) {
    ScriptResult result;
    result.kind = count == 1 ? ScriptResult::Kind::Number : ScriptResult::Kind::Array;
    result.count = count;
    for (unsigned i = 0; i < count; ++i)
        result.numbers[i] = value.Float(i);
    return result;
}

ScriptResult GetParamValue(const Parameter& parameter) {
    const ParameterTraits& traits = TraitsOf(parameter.type);
    switch (traits.content) {
    case ParameterTraits::Content::Floats:
        return FloatsOf(parameter.value, traits.components);
    case ParameterTraits::Content::Texture:
        return ScriptResult::Number(static_cast<std::int32_t>(parameter.texture));
    case ParameterTraits::Content::Integer:
        return ScriptResult::Number(parameter.value.Int(0));
    case ParameterTraits::Content::None:
        break;
    }
    return ScriptResult::FirstArgument(); // paths, groups and unknown types have no value
}

ScriptResult SetParamValue(Parameter& parameter, const Arg::TypedValue& value) {
    if (!value.isGiven || value.type != parameter.type)
        return ScriptResult::Bool(true);
    const ParameterTraits& traits = TraitsOf(parameter.type);
    for (unsigned i = 0; i < traits.components; ++i)
        parameter.value.SetFloat(i, value.numbers[i]);
    if (traits.isTexture())
        parameter.texture = static_cast<std::uint32_t>(value.integer);
    else if (traits.isInteger())
        parameter.value.SetInt(0, value.integer);
    return ScriptResult::Bool(true);
}

ScriptResult SetParamMinMax(Parameter& parameter, float low, float high) {
    if (parameter.type == Parameter::FLOAT) {
        parameter.min.SetFloat(0, low);
        parameter.max.SetFloat(0, high);
    }
    return ScriptResult::Bool(true);
}

ScriptResult SetParamChoices(Parameter& parameter, const std::string& choices) {
    parameter.choices = choices;
    const auto bars = std::count(parameter.choices.begin(), parameter.choices.end(), '|');
    parameter.choiceCount = bars == 0 ? 0 : static_cast<std::uint32_t>(bars) + 1; // one entry counts as none
    return ScriptResult::Bool(true);
}

ScriptResult SetParamPrecision(Parameter& parameter, std::int32_t precision) {
    parameter.flags = static_cast<std::uint32_t>(precision) << Parameter::PrecisionShift |
                      (parameter.flags & ~Parameter::PrecisionMask);
    return ScriptResult::Bool(true);
}

ScriptResult SetParamEnabled(Parameter& parameter, std::int32_t enabled) {
    parameter.flags &= ~std::uint32_t{Parameter::Disabled};
    if (enabled == 0)
        parameter.flags |= Parameter::Disabled;
    return ScriptResult::Bool(true);
}

ScriptResult SetParamFlags(Parameter& parameter, std::uint32_t flags) {
    parameter.flags = flags;
    return ScriptResult::Bool(true);
}

ScriptResult GetParamFlags(const Parameter& parameter) {
    return ScriptResult::Number(static_cast<std::int32_t>(parameter.flags));
}

using Live = Arg::Live<Parameter>;

constexpr NativeFunction s_Functions[] = {
    Native<InitParam, Refusal::Zero, Arg::Passed<Arg::Text>, Arg::Passed<Arg::Int>, Arg::Optional<Arg::Text>>(
        "SV_initParam"),
    Native<GetParamValue, Refusal::False, Live>("SV_getParamValue"),
    Native<SetParamValue, Refusal::False, Live, Arg::ParameterValue>("SV_setParamValue"),
    Native<SetParamMinMax, Refusal::False, Live, Arg::Float, Arg::Float>("SV_setParamMinMax"),
    Native<SetParamChoices, Refusal::False, Live, Arg::Text>("SV_setParamChoices"),
    Native<SetParamPrecision, Refusal::False, Live, Arg::Int>("SV_setParamPrecision"),
    Native<SetParamEnabled, Refusal::False, Live, Arg::Int>("SV_setParamEnabled"),
    Native<SetParamFlags, Refusal::False, Live, Arg::UInt>("SV_setParamFlags"),
    Native<GetParamFlags, Refusal::False, Live>("SV_getParamFlags"),
};

} // namespace

std::span<const NativeFunction> ParameterBindings() {
    return s_Functions;
}
