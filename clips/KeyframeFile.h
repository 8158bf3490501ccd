#pragma once

#include <string>
#include <vector>

#include "clips/Animation.h"

namespace fxhost {

// Adds the parameters of a JSON file: {"Amount": {"0": 0, "1s": 100}, "Centre": {"0": [10, 20], ...},
// "Mode": "Fast"}. Values are numbers, arrays of numbers, true, false, or texts that ParseValue reads. A
// value without times is constant. Throws WrongUse that names the file.
void AddKeyframeFile(Animation& animation, const std::string& path, const std::vector<Parameter>& parameters,
                     const FrameRate& rate);

} // namespace fxhost
