#pragma once

#include <memory>

#include "clips/FrameSink.h"
#include "clips/FrameSource.h"
#include "toolkit/Alpha.h"

namespace fxhost {

// Bytes of one raw frame. Raw frames follow each other without headers: rows from the top, pixels as red,
// green, blue and straight alpha. A channel is a byte (depth 8), a little-endian 16-bit number from 0 to
// 65535 (depth 16) or a little-endian 32-bit float (depth 32).
std::size_t RawFrameBytes(unsigned width, unsigned height, unsigned depth);

// Reads raw frames from a descriptor, which stays open. The first frame has number 1. `required`: last frame
// that must exist; 0 when the stream may end after any frame. `alpha`: how the stream stores colours.
std::unique_ptr<FrameSource> ReadRawFrames(int descriptor, unsigned width, unsigned height, unsigned depth,
                                           long required, AlphaMode alpha = AlphaMode::Auto);

// Writes raw frames to a descriptor, which stays open. SIGPIPE must be ignored.
std::unique_ptr<FrameSink> WriteRawFrames(int descriptor, AlphaMode alpha = AlphaMode::Auto);

} // namespace fxhost
