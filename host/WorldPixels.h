#pragma once

#include <cstddef>
#include <cstdint>

#include "sdk/HostApi.h"

// The pixels of the host's worlds: their depth, their extent and the memory between their rows.
namespace Adapter {

// Bits per channel of a world: 8, 16 or 32 (float), or 0 when the host does not know the world's format or
// the format is not in PixelFormats::Table. Stores the host's code in formatOut unless that is null. Throws
// MissingSuite.
int GetPixelDataBpp(PF_LayerDef* world, PF_InData* in, PF_OutData* out, int* formatOut);

// Stores the address of the world's top left pixel, null for an empty world, and returns its bits per
// channel.
int GetPixelData(PF_InData* in, void** pixels, PF_LayerDef* world);

// True for a layer without pixels, such as one outside the frame.
inline bool IsEmptyWorld(const PF_LayerDef& world) {
    return !world.data || world.width <= 0 || world.height <= 0;
}

// Bytes of a row of four-channel pixels without padding.
inline std::size_t PackedRowBytes(std::size_t width, int bits) {
    return width * static_cast<std::size_t>(bits) / 2;
}

// Sets the world's pixels to zero but leaves the padding between its rows alone.
void ClearPixels(PF_LayerDef& world, int bits);

// The part that two lines of pixels share when the first pixel of one line, `size` pixels long, is at pixel
// `offset` of the other one.
struct Overlap {
    Overlap(std::int64_t size, std::int64_t offset, std::int64_t otherSize);
    std::int64_t source; // first shared pixel, counted on the line itself
    std::int64_t target; // first shared pixel, counted on the other line
    std::int64_t count;  // shared pixels, 0 when the lines do not meet
};

} // namespace Adapter
