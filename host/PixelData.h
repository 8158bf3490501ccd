#pragma once

#include <cstddef>

#include "AE_Effect.h"

namespace Adapter {

// Bits per channel of a world: 8, 16 or 32 (float); 0 for a pixel format that is not known or that the host
// cannot tell. The host's own code goes to formatOut when given. Throws MissingSuite.
int GetPixelDataBpp(PF_LayerDef* world, PF_InData* in, PF_OutData* out, int* formatOut);

// The address of the world's first pixel (top left, null for an empty world), and its bits per channel.
int GetPixelData(PF_InData* in, void** pixels, PF_LayerDef* world);

// True for a layer that has no pixels, such as one that lies outside the frame.
inline bool IsEmptyWorld(const PF_LayerDef& world) {
    return !world.data || world.width <= 0 || world.height <= 0;
}

// Bytes of a row of four-channel pixels without padding.
inline std::size_t PackedRowBytes(std::size_t width, int bits) {
    return width * static_cast<std::size_t>(bits) / 2;
}

} // namespace Adapter
