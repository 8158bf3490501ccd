#pragma once

#include "imagelib/simd/Kernels.h"

// The rows of an error diffusion: groups of rows that share the buffer of errors, and the taps placed in that
// buffer.
namespace ImageLib::Simd {
namespace {

// A tap with the place of its source relative to its target in the buffer of errors, in pixels.
struct PlacedTap {
    std::ptrdiff_t offset;
    float weight;
};

struct TapList {
    PlacedTap taps[s_MaxTaps];
    unsigned count = 0;
};

// Places the taps from..to-1 for a target in row y. In a reversed row the scan runs against x, and so does
// dx.
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

// The first pixels of up to s_ErrorRows successive rows, in the picture and in the buffer of errors.
struct RowGroup {
    Pixel32* pixels[s_ErrorRows];
    Pixel32* errors[s_ErrorRows];
    std::uint32_t y; // of the first row
    unsigned rows;
};

// One row of a serpentine: odd rows run from right to left.
struct RowScan {
    Pixel32* pixels;
    Pixel32* errors;
    std::uint32_t y;
    std::uint32_t width;
    std::ptrdiff_t direction; // 1 or -1
    std::ptrdiff_t first;     // x of the first pixel in scan order

    RowScan(const DiffusionJob& job, const RowGroup& group, unsigned row)
        : pixels(group.pixels[row]), errors(group.errors[row]), y(group.y + row), width(job.width),
          direction(y & 1 ? -1 : 1), first(y & 1 ? static_cast<std::ptrdiff_t>(job.width) - 1 : 0) {}
};

// Calls diffuse(group) for one group of rows after another, and keeps each group's last errors for the next
// one.
template <class Diffuse>
void ForEachGroup(const DiffusionJob& job, Diffuse diffuse) {
    Pixel32* const firstRow = job.errors + job.rowsAbove * job.errorStride;
    for (std::uint32_t y = 0; y < job.height; y += s_ErrorRows) {
        RowGroup group;
        group.y = y;
        group.rows = job.height - y < s_ErrorRows ? job.height - y : s_ErrorRows;
        for (unsigned row = 0; row < group.rows; ++row) {
            group.pixels[row] = reinterpret_cast<Pixel32*>(job.pixels + (y + row) * job.stride);
            group.errors[row] = firstRow + row * job.errorStride;
        }
        diffuse(group);
        for (unsigned row = 0; row < job.rowsAbove; ++row)
            __builtin_memcpy(job.errors + row * job.errorStride,
                             job.errors + (row + s_ErrorRows) * job.errorStride, job.width * sizeof(Pixel32));
    }
}

// Adds the errors of the rows above to a whole row before its scan, as they do not depend on the row's own
// errors. All channels have the same weights, so the row is treated as an array of floats.
template <class W>
void AddErrorsFromAbove(const RowScan& row, const TapList& list) {
    float* const sums = &row.pixels->alpha;
    const float* const sources = &row.errors->alpha;
    const std::size_t count = std::size_t{row.width} * 4;
    std::size_t i = 0;
    for (; count - i >= W::Lanes; i += W::Lanes) {
        typename W::Float sum = W::Load(sums + i);
        for (unsigned t = 0; t < list.count; ++t)
            sum = sum + W::Splat(list.taps[t].weight) * W::Load(sources + i + list.taps[t].offset * 4);
        W::Store(sums + i, sum);
    }
    for (; i < count; ++i)
        for (unsigned t = 0; t < list.count; ++t)
            sums[i] +=
                list.taps[t].weight * sources[static_cast<std::ptrdiff_t>(i) + list.taps[t].offset * 4];
}

} // namespace
} // namespace ImageLib::Simd
