#pragma once

#include "imagelib/Quantizers.h"
#include "imagelib/simd/Kernels.h"

#include <memory>
#include <vector>

// Mapping without error diffusion, which Process and Ordered share. Internal to the room.
namespace ImageLib {

// The number rows[y & rowMask][x] is added to all channels of pixel (x, y). Each row is as long as the
// surface is wide.
struct Offsets {
    std::vector<std::vector<float>> rows;
    unsigned rowMask = 0;
};

// Makes the table of a colour set for the inner loops. Equal colours at its end are dropped but for the first
// of them, as they can never be chosen. Throws std::bad_alloc.
std::unique_ptr<Simd::PaletteTable> MakeTable(const ColourSet& colours);

// Replaces every pixel by the colour of the set that is chosen for the pixel plus its offset; offsets may be
// null. May use several threads. Throws std::bad_alloc.
void MapSurface(Surface<Pixel32>& surface, const ColourSet& colours, const Offsets* offsets);

} // namespace ImageLib
