#pragma once

#include <cstddef>
#include <cstdint>

#include "AE_Effect.h"

namespace Adapter {

// A frame as the engine hands it out: rows without padding, the last row first, 0..65535 at 16 bits.
struct EngineFrame {
    const void* pixels;
    std::uint32_t width; // pixels
    std::uint32_t height;
    int bits; // per channel
};

// Copies the frame into the middle of a world of the same depth, top row first, and cuts off what does not
// fit. Halves of odd margins go to the right and bottom. The channel order stays; 16-bit channels come down
// to 0..32768.
void CopyFrame(const EngineFrame& frame, PF_LayerDef& world);

// 0..65535 to 0..32768. Neither address needs an alignment; the ranges must not overlap.
void ConvertRow16(const std::byte* source, std::byte* target, std::size_t channels);

// Sets the world's pixels to zero, padding between the rows excepted.
void ClearPixels(PF_LayerDef& world, int bits);

// Where a line of `size` pixels meets another one, on which it starts at pixel `offset`.
struct Overlap {
    Overlap(std::int64_t size, std::int64_t offset, std::int64_t otherSize);
    std::int64_t source; // first pixel on the line itself
    std::int64_t target; // first pixel on the other one
    std::int64_t count;  // 0 when they do not meet
};

} // namespace Adapter
