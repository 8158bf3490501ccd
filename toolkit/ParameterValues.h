#pragma once

#include <string>
#include <vector>

#include "parameters/Parameter.h"

namespace fxhost {

// A value for one parameter.
struct ParameterSetting {
    unsigned index = 0; // in the effect's list of parameters
    Parameter::Value value;
};

// Splits "NAME=VALUE" at the first "="; both parts may be empty. Throws WrongUse when there is no "=".
struct NamedText {
    std::string name;
    std::string text;
};
NamedText SplitAssignment(const std::string& option, const std::string& assignment);

// Finds a parameter by the name that the script uses, or otherwise by its label, and returns its index.
// Parameters without a control in the host are not found. Throws WrongUse with the list of parameters; its
// text begins with `option`.
unsigned FindParameter(const std::string& option, const std::string& name,
                       const std::vector<Parameter>& parameters);

// Parses "NAME=VALUE". VALUE is a number (sliders, within their range; angles in degrees), comma-separated
// numbers (points in pixels, colours as red, green, blue and perhaps alpha, 1 being full), "#rrggbb" for a
// colour, on or off, or for a pop-up its number from 1 or the entry's text. Throws WrongUse with the form
// that was expected.
ParameterSetting ParseSetting(const std::string& assignment, const std::vector<Parameter>& parameters);

// Replaces percent of the layer ("50%,25%") by pixels in an assignment to a point, also in its keyframes.
// `width` and `height` are those of the layer in pixels. Other assignments stay as they are.
std::string PercentToPixels(const std::string& assignment, const std::vector<Parameter>& parameters,
                            unsigned width, unsigned height);

// Parses the text of a value for this parameter, in the same forms.
Parameter::Value ParseValue(const std::string& text, const Parameter& parameter);

// The entries of a pop-up.
std::vector<std::string> Choices(const Parameter& parameter);

// The initial value of a slider, angle, point or colour in a host. It can differ from the default that the
// script declares: hosts read colours as bytes (returned here as 0 to 1) and 2-D points as percent of the
// layer, and they take y for z in 3-D points. Empty for other types.
std::vector<double> HostDefault(const Parameter& parameter);

// The same as text: points with "%", check boxes as on or off, pop-ups as the number of the entry; empty for
// types without a value.
std::string DefaultText(const Parameter& parameter);

} // namespace fxhost
