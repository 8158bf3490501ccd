#pragma once

#include <cstddef>

// Depths are bits per channel: 8, 16 and 32 (float); hosts also say 15 for 16.
namespace PixelDepth {

// The depth from which sizes are computed.
constexpr unsigned ForSizes(unsigned depth) {
    return depth == 15 ? 16 : depth;
}

// At least 1, so that sizes may be divided by it.
constexpr unsigned BytesPerChannel(unsigned depth) {
    return ForSizes(depth) < 8 ? 1 : ForSizes(depth) / 8;
}

// Bytes of a tightly packed row of four channels.
constexpr std::size_t RowBytes(unsigned width, unsigned depth) {
    return std::size_t(width) * ForSizes(depth) / 2;
}

} // namespace PixelDepth
