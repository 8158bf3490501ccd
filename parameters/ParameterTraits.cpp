#include "parameters/ParameterTraits.h"

#include <iterator>

namespace {

using Control = ParameterTraits::Control;
using Content = ParameterTraits::Content;

constexpr ParameterTraits s_Traits[] = {
    // The index is the Parameter::Type.
    {"unknown", Control::None, Content::None, 0},
    {"slider", Control::Slider, Content::Floats, 1},
    {"3-D point", Control::Point3D, Content::Floats, 3},
    {"colour", Control::Color, Content::Floats, 4},
    {"layer", Control::Layer, Content::Texture, 0},
    {"2-D point", Control::Point2D, Content::Floats, 2},
    {"texture pop-up", Control::Popup, Content::Texture, 0},
    {"path", Control::Path, Content::None, 0},
    {"check box", Control::CheckBox, Content::Integer, 0},
    {"pop-up", Control::Popup, Content::Integer, 0},
    {"group start", Control::GroupStart, Content::None, 0},
    {"group end", Control::GroupEnd, Content::None, 0},
    {"angle", Control::Angle, Content::Floats, 1},
};
static_assert(std::size(s_Traits) == Parameter::ANGLE + 1);
static_assert(s_Traits[Parameter::BOOL].control == Control::CheckBox);
static_assert(s_Traits[Parameter::ANGLE].control == Control::Angle);

} // namespace

const ParameterTraits& TraitsOf(Parameter::Type type) {
    return s_Traits[type < std::size(s_Traits) ? type : Parameter::UNKNOWN];
}
