#pragma once

#include <string>
#include <vector>

#include "parameters/Parameter.h"

namespace fxhost {

// A value for one parameter, named by its index in the effect's list.
struct ParameterSetting {
    unsigned index = 0;
    Parameter::Value value;
};

// "NAME=VALUE" split at the first "="; both parts may be empty. Throws WrongUse without a "=".
struct NamedText {
    std::string name;
    std::string text;
};
NamedText SplitAssignment(const std::string& option, const std::string& assignment);

// The index of the parameter that the script calls `name`, else of the one whose label it is. Parameters that
// the host shows no control for are not found. Throws WrongUse that lists what exists; `option` opens the
// text.
unsigned FindParameter(const std::string& option, const std::string& name,
                       const std::vector<Parameter>& parameters);

// Reads "NAME=VALUE": a number (sliders, within their range; angles in degrees), comma-separated numbers
// (points in pixels, colours as red, green, blue and perhaps alpha, 1 being full), on or off, or for a pop-up
// its number from 1 or the entry's text. Throws WrongUse that says which shape was expected.
ParameterSetting ParseSetting(const std::string& assignment, const std::vector<Parameter>& parameters);

// The same for a parameter that is already known and the bare text of the value.
Parameter::Value ParseValue(const std::string& text, const Parameter& parameter);

// The entries of a pop-up.
std::vector<std::string> Choices(const Parameter& parameter);

// The numbers that a host starts a slider, angle, point or colour with, which is not always what the script
// declared: colours are bytes there (here 0 to 1 again), 2-D points percent of the layer, and the z of 3-D
// points is their y. Empty for other types.
std::vector<double> HostDefault(const Parameter& parameter);

// The same as text, points with "%", switches as on or off, pop-ups as the entry's number; empty for types
// without a value.
std::string DefaultText(const Parameter& parameter);

} // namespace fxhost
