#include "drivers/HostValues.h"

#include <algorithm>

namespace fxhost {

namespace {

struct TypeRow {
    PF_ParamType host;
    Parameter::Type type;
};
constexpr TypeRow s_Types[] = {
    {PF_Param_FLOAT_SLIDER, Parameter::FLOAT},
    {PF_Param_POINT_3D, Parameter::POINT},
    {PF_Param_COLOR, Parameter::COLOR},
    {PF_Param_LAYER, Parameter::LAYER},
    {PF_Param_POINT, Parameter::POINT2D},
    {PF_Param_PATH, Parameter::PATH},
    {PF_Param_CHECKBOX, Parameter::BOOL},
    {PF_Param_POPUP, Parameter::POPUP},
    {PF_Param_GROUP_START, Parameter::GROUP_START},
    {PF_Param_GROUP_END, Parameter::GROUP_END},
    {PF_Param_ANGLE, Parameter::ANGLE},
};

template <class Channel>
void Reverse(Picture& picture) {
    auto* channel = reinterpret_cast<Channel*>(picture.bytes.data());
    auto* const end = channel + picture.bytes.size() / sizeof(Channel);
    for (; channel != end; channel += 4) {
        std::swap(channel[0], channel[3]);
        std::swap(channel[1], channel[2]);
    }
}

} // namespace

stricthost::ParamValue ToHostValue(Parameter::Type type, const Parameter::Value& value) {
    switch (type) {
    case Parameter::FLOAT:
    case Parameter::ANGLE:
        return static_cast<double>(value.Float(0));
    case Parameter::BOOL:
    case Parameter::POPUP:
    case Parameter::TEXTURE:
        return static_cast<int>(value.Int(0));
    case Parameter::POINT2D:
        return stricthost::PointValue{value.Float(0), value.Float(1)};
    case Parameter::POINT:
        return stricthost::Point3DValue{value.Float(0), value.Float(1), value.Float(2)};
    case Parameter::COLOR:
        return stricthost::ColorValue{value.Float(0), value.Float(1), value.Float(2), value.Float(3)};
    default:
        return {};
    }
}

Parameter DescribeParam(const stricthost::PublishedParam& param) {
    const auto* const row = std::find_if(std::begin(s_Types), std::end(s_Types),
                                         [&](const TypeRow& type) { return type.host == param.type; });
    Parameter parameter(param.label, row != std::end(s_Types) ? row->type : Parameter::UNKNOWN, param.label);
    parameter.min.SetFloat(0, static_cast<float>(param.validMin));
    parameter.max.SetFloat(0, static_cast<float>(param.validMax));
    parameter.choices.clear();
    for (const std::string& choice : param.choices)
        parameter.choices += (parameter.choices.empty() ? "" : "|") + choice;
    parameter.choiceCount = static_cast<std::uint32_t>(param.choices.size());
    return parameter;
}

void ReverseChannels(Picture& picture) {
    if (picture.depth == 8)
        Reverse<std::uint8_t>(picture);
    else if (picture.depth == 16)
        Reverse<std::uint16_t>(picture);
    else
        Reverse<float>(picture);
}

} // namespace fxhost
