#pragma once

#include <cstddef>

// Depths of pixels, in bits per channel. Textures, render targets and surfaces store 8, 16 or 32 (float)
// bits. Hosts use 15 for 16, and every other number, which a script may pass, counts as 8.
namespace PixelDepth {

constexpr unsigned Stored(unsigned depth) {
    return depth == 15 || depth == 16 ? 16 : depth == 32 ? 32 : 8;
}

constexpr std::size_t BytesPerChannel(unsigned depth) {
    return Stored(depth) / 8;
}

// Pixels have four channels.
constexpr std::size_t BytesPerPixel(unsigned depth) {
    return 4 * BytesPerChannel(depth);
}

// Size of a row without padding.
constexpr std::size_t RowBytes(unsigned width, unsigned depth) {
    return width * BytesPerPixel(depth);
}

} // namespace PixelDepth
