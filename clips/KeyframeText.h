#pragma once

#include <string>
#include <vector>

#include "clips/Animation.h"

namespace fxhost {

// Seconds of a keyframe's time: "12" counts frames at `rate`, "1.5s" seconds. Throws WrongUse whose text
// starts with `where`.
double ParseKeyframeTime(const std::string& text, const FrameRate& rate, const std::string& where);

// Adds one --param: "NAME=VALUE", as ParseSetting reads it, or "NAME=TIME:VALUE, TIME:VALUE, ...". When there
// is a ";", only ";" separates keyframes; otherwise each "," that is followed by "TIME:". Throws WrongUse.
void AddSetting(Animation& animation, const std::string& assignment, const std::vector<Parameter>& parameters,
                const FrameRate& rate);

} // namespace fxhost
