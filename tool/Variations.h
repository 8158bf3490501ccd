#pragma once

#include <string>
#include <vector>

#include "toolkit/ParameterValues.h"

namespace fxhost {

// One parameter and the values that a contact sheet shows of it.
struct Variation {
    std::string name; // as the user gave it
    std::vector<std::string> texts;
    std::vector<ParameterSetting> settings; // one for each text
};

// Reads "NAME=V1,V2,..."; points and colours, whose values have commas, are separated by semicolons:
// "Tint=1,0,0; 0,0,1". Throws WrongUse.
Variation ParseVariation(const std::string& text, const std::vector<Parameter>& parameters);

} // namespace fxhost
