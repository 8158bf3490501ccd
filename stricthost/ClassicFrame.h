#pragma once

#include <cstdint>
#include <vector>

#include "stricthost/FrameGeometry.h"
#include "stricthost/FrameResult.h"

namespace stricthost {

class Instance;

// Renders one frame with FRAME_SETUP, RENDER and FRAME_SETDOWN. unwritten receives the numbers, row by row,
// of the output pixels that still hold the fill pattern.
FrameResult RenderClassic(Instance& instance, const FrameState& frame, std::vector<std::uint32_t>& unwritten);

} // namespace stricthost
