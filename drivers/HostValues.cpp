#include "drivers/HostValues.h"

#include <utility>

#include "host/HostParamType.h"
#include "parameters/ParameterTraits.h"

namespace fxhost {

namespace {

// The type of parameter behind the host's kind of control. Pop-ups of textures are reported as ordinary
// pop-ups, because the host shows both in the same way.
Parameter::Type EngineType(PF_ParamType hostType) {
    for (const auto& row : Adapter::s_HostParamTypes)
        for (unsigned type = Parameter::ANGLE; row.code == hostType && type > Parameter::UNKNOWN; --type)
            if (TraitsOf(static_cast<Parameter::Type>(type)).control == row.control)
                return static_cast<Parameter::Type>(type);
    return Parameter::UNKNOWN;
}

} // namespace

stricthost::ParamValue ToHostValue(Parameter::Type type, const Parameter::Value& value) {
    const ParameterTraits& traits = TraitsOf(type);
    if (traits.isInteger() || traits.hasChoices())
        return static_cast<int>(value.Int(0));
    switch (traits.components) {
    case 1:
        return static_cast<double>(value.Float(0));
    case 2:
        return stricthost::PointValue{value.Float(0), value.Float(1)};
    case 3:
        return stricthost::Point3DValue{value.Float(0), value.Float(1), value.Float(2)};
    case 4:
        return stricthost::ColorValue{value.Float(0), value.Float(1), value.Float(2), value.Float(3)};
    default:
        return {};
    }
}

Parameter DescribeParam(const stricthost::PublishedParam& param) {
    Parameter parameter(param.label, EngineType(param.type), param.label);
    parameter.min.SetFloat(0, static_cast<float>(param.validMin));
    parameter.max.SetFloat(0, static_cast<float>(param.validMax));
    parameter.choices.clear();
    for (const std::string& choice : param.choices)
        parameter.choices += (parameter.choices.empty() ? "" : "|") + choice;
    parameter.choiceCount = static_cast<std::uint32_t>(param.choices.size());
    return parameter;
}

} // namespace fxhost
