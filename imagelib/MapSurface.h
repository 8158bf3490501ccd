#pragma once

#include "imagelib/Quantizers.h"
#include "imagelib/vector/Kernels.h"

#include <memory>
#include <vector>

// The driver below the mappings that carry no error, shared by Process and Ordered. Internal to the room.
namespace ImageLib {

// What is added to all channels of pixel (x, y): rows[y & rowMask][x].
struct Offsets {
    std::vector<std::vector<float>> rows;
    unsigned rowMask = 0;
};

// The set's colours for the inner loops. Copies at its end that can never win are dropped.
std::unique_ptr<Vector::PaletteTable> MakeTable(const ColourSet& colours);

// Replaces every pixel by the colour of the set for the pixel plus its offset (null: none).
void MapSurface(Surface<Pixel32>& surface, const ColourSet& colours, const Offsets* offsets);

} // namespace ImageLib
