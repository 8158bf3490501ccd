#pragma once

#include "parameters/ParameterTraits.h"
#include "sdk/HostApi.h"

namespace Adapter {

// The host API's code for each kind of control.
struct HostParamType {
    ParameterTraits::Control control;
    PF_ParamType code;
};
inline constexpr HostParamType s_HostParamTypes[] = {
    {ParameterTraits::Control::Slider, PF_Param_FLOAT_SLIDER},
    {ParameterTraits::Control::Point3D, PF_Param_POINT_3D},
    {ParameterTraits::Control::Color, PF_Param_COLOR},
    {ParameterTraits::Control::Layer, PF_Param_LAYER},
    {ParameterTraits::Control::Point2D, PF_Param_POINT},
    {ParameterTraits::Control::Popup, PF_Param_POPUP},
    {ParameterTraits::Control::Path, PF_Param_PATH},
    {ParameterTraits::Control::CheckBox, PF_Param_CHECKBOX},
    {ParameterTraits::Control::GroupStart, PF_Param_GROUP_START},
    {ParameterTraits::Control::GroupEnd, PF_Param_GROUP_END},
    {ParameterTraits::Control::Angle, PF_Param_ANGLE},
};

} // namespace Adapter
