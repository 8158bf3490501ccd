#pragma once

#include <memory>

#include "clips/FrameSink.h"
#include "clips/FrameSource.h"

namespace fxhost {

// Raw frames, one after the other without anything between them: rows from the top, pixels as red, green,
// blue, straight alpha; each channel a byte (depth 8), a little-endian 16-bit number from 0 to 65535 (depth
// 16) or a little-endian 32-bit float (depth 32).
std::size_t RawFrameBytes(unsigned width, unsigned height, unsigned depth);

// Reads raw frames from a descriptor, which is not closed; the first frame has number 1. `last`: the frame
// that must still come, 0 when any number of frames will do.
std::unique_ptr<FrameSource> ReadRawFrames(int descriptor, unsigned width, unsigned height, unsigned depth,
                                           long last);

// Writes raw frames to a descriptor, which is not closed. SIGPIPE must be ignored.
std::unique_ptr<FrameSink> WriteRawFrames(int descriptor);

} // namespace fxhost
