#pragma once

#include <cstddef>
#include <cstdint>

#include "sdk/HostApi.h"

namespace Adapter {

// A frame as the engine returns it: rows without padding, the bottom row first, channels 0..65535 at 16 bits.
struct EngineFrame {
    const void* pixels;
    std::uint32_t width; // pixels
    std::uint32_t height;
    int bits; // per channel
};

// Copies the frame into the centre of a world of the same depth, top row first, and clips what does not fit.
// When a margin is odd, the extra pixel is on the right or at the bottom. The channel order is kept; 16-bit
// channels are converted to 0..32768.
void CopyFrame(const EngineFrame& frame, PF_LayerDef& world);

// Converts 16-bit channels from 0..65535 to 0..32768. Neither address needs an alignment; the ranges must not
// overlap.
void ConvertRow16(const std::byte* source, std::byte* target, std::size_t channels);

} // namespace Adapter
