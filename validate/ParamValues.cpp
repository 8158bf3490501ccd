#include "validate/ParamValues.h"

namespace validate {

using stricthost::ColorValue;
using stricthost::ParamValue;
using stricthost::Point3DValue;
using stricthost::PointValue;

std::vector<ParamValue> ValuesToTry(const stricthost::PublishedParam& param, double width, double height) {
    switch (param.type) {
    case PF_Param_FLOAT_SLIDER:
        return {param.validMin, param.validMax, (param.sliderMin + param.sliderMax) / 2};
    case PF_Param_ANGLE:
        return {0.0, 45.5, -3600.0};
    case PF_Param_CHECKBOX:
        return {0, 1};
    case PF_Param_POPUP: {
        std::vector<ParamValue> values;
        for (int i = 1; i <= static_cast<int>(param.choices.size()); ++i)
            values.emplace_back(i);
        return values;
    }
    case PF_Param_POINT:
        return {PointValue{0, 0}, PointValue{width, height}, PointValue{-width, height / 3}};
    case PF_Param_POINT_3D:
        return {Point3DValue{0, 0, 0}, Point3DValue{width, height, 100}};
    case PF_Param_COLOR:
        return {ColorValue{0, 0, 0, 1}, ColorValue{1, 1, 1, 1}, ColorValue{0.25f, 0.5f, 0.75f, 1}};
    default:
        return {};
    }
}

// Variants mix the values of neighbouring parameters in different ways.
void SetVariant(const stricthost::StrictHost& host, stricthost::Instance& instance, unsigned variant) {
    const auto& params = host.Params();
    for (std::size_t i = 1; variant != 0 && i < params.size(); ++i) {
        const auto values = ValuesToTry(params[i], 40, 30);
        if (!values.empty())
            instance.SetValue(i, values[(i * variant + variant + 1) % values.size()]);
    }
}

} // namespace validate
