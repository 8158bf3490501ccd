#pragma once

#include "imagelib/vector/Kernels.h"

// The taps of a diffusion kernel, placed in the buffer of errors.
namespace ImageLib::Vector {
namespace {

// A tap with its source's place relative to the target in the buffer of errors.
struct PlacedTap {
    std::ptrdiff_t offset;
    float weight;
};

struct TapList {
    PlacedTap taps[MaxTaps];
    unsigned count = 0;
};

// Taps from..to-1 for a target in row y. In a reversed row the scan runs against x, and so does dx.
inline TapList PlaceTaps(const DiffusionJob& job, unsigned from, unsigned to, std::uint32_t y) {
    TapList list;
    for (unsigned i = from; i < to; ++i) {
        const DiffusionTap& tap = job.taps[i];
        const bool reversed = job.serpentine && ((y - tap.row) & 1);
        const std::ptrdiff_t up = static_cast<std::ptrdiff_t>(tap.row * job.errorStride);
        list.taps[list.count++] = {(reversed ? -tap.dx : tap.dx) - up, tap.weight};
    }
    return list;
}

} // namespace
} // namespace ImageLib::Vector
