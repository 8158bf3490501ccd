#pragma once

#include "parameters/Parameter.h"

// What a type of parameter is. This table is the only place that knows; every room asks it.
struct ParameterTraits {
    enum class Content { None, Floats, Integer, Texture };
    // The kind of control that a host shows.
    enum class Control {
        None,
        Slider,
        Point3D,
        Color,
        Layer,
        Point2D,
        Popup,
        Path,
        CheckBox,
        GroupStart,
        GroupEnd,
        Angle,
    };

    const char* name; // as users read it, for example "slider"
    Control control;
    Content content;
    unsigned components; // number of floats in the value; 0 when the value is not made of floats

    constexpr bool isFloat() const { return content == Content::Floats; }
    constexpr bool isInteger() const { return content == Content::Integer; }
    constexpr bool isTexture() const { return content == Content::Texture; }
    constexpr bool isArray() const { return components > 1; } // scripts pass the value as an array
    constexpr bool hasChoices() const { return control == Control::Popup; }
    constexpr bool hasControl() const { return control != Control::None; }
    constexpr bool isInterpolated() const { return isFloat(); } // between keyframes; others hold their value
};

// The traits of a type. Codes that are no Parameter::Type, which scripts may pass, have those of UNKNOWN.
const ParameterTraits& TraitsOf(Parameter::Type type);
