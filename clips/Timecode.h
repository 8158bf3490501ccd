#pragma once

#include <string>

#include "clips/FrameRate.h"

namespace fxhost {

// The timecode `frames` later: "01:00:00:24" plus 1 is "01:00:01:00" at 25 frames per second. With ";" before
// the frames, it counts without the numbers that drop-frame timecode leaves out. Another text is returned as
// it is.
std::string TimecodeLater(const std::string& timecode, long frames, const FrameRate& rate);

} // namespace fxhost
