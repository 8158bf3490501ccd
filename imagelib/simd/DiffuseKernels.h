#pragma once

#include "imagelib/simd/Searches.h"
#include "imagelib/simd/SerialScanKernels.h"

// Error diffusion pixel by pixel. The scalar implementation scatters a pixel's error to later pixels; here a
// pixel gathers the errors of earlier pixels in the order in which the scatter would add them: from the
// topmost row first and from its own row last, each row in scan order. So every sum is rounded in the same
// way, a row may follow the row above at a distance of a few pixels, and several rows can advance together.
// Pixels outside the picture count as errors of zero, which changes nothing but the sign of a zero.
namespace ImageLib::Simd {
namespace {

template <class V>
typename V::Pixel Gather(typename V::Pixel sum, const Pixel32* error, const TapList& list) {
    for (unsigned i = 0; i < list.count; ++i)
        sum = sum + V::SplatPixel(list.taps[i].weight) * V::LoadPixel(error + list.taps[i].offset);
    return sum;
}

// Replaces the pixel by the entry that `finder` finds for the sum, and keeps the error.
template <class V, class Finder>
void ReplacePixel(typename V::Pixel sum, Pixel32* pixel, Pixel32* error, const Finder& finder) {
    const typename V::Pixel chosen = V::LoadPixel(finder.palette.entries + finder.template Find<V>(sum));
    V::StorePixel(pixel, chosen);
    V::StorePixel(error, sum - chosen);
}

// Processes the rows of a group left to right and together, each `lag` pixels behind the row above it. The
// processor overlaps their work, as they do not wait for each other's results.
template <class V, class Finder>
void DiffuseStaggered(const DiffusionJob& job, const RowGroup& group, const Finder& finder) {
    const TapList list = PlaceTaps(job, 0, job.tapCount, 0);
    const auto width = static_cast<std::ptrdiff_t>(job.width);
    const std::ptrdiff_t steps = width + std::ptrdiff_t{job.lag} * (group.rows - 1);
    for (std::ptrdiff_t step = 0; step < steps; ++step) {
        for (unsigned row = 0; row < group.rows; ++row) {
            const std::ptrdiff_t x = step - std::ptrdiff_t{job.lag} * row;
            if (x < 0 || x >= width)
                continue;
            Pixel32* const error = group.errors[row] + x;
            const auto sum = Gather<V>(V::LoadPixel(group.pixels[row] + x), error, list);
            ReplacePixel<V>(sum, group.pixels[row] + x, error, finder);
        }
    }
}

// Processes one row of a serpentine in its scan order, after the errors of the rows above have been added.
template <class V, class Finder>
void ScanRow(const RowScan& row, const TapList& own, const Finder& finder) {
    std::ptrdiff_t x = row.first;
    for (std::uint32_t i = 0; i < row.width; ++i, x += row.direction) {
        const auto sum = Gather<V>(V::LoadPixel(row.pixels + x), row.errors + x, own);
        ReplacePixel<V>(sum, row.pixels + x, row.errors + x, finder);
    }
}

// V searches for one pixel.
template <class V, class Finder>
void DiffuseRowsTogether(const DiffusionJob& job, const Finder& finder) {
    ForEachGroup(job, [&](const RowGroup& group) { DiffuseStaggered<V>(job, group, finder); });
}

// V searches for one pixel, W adds the errors of the rows above.
template <class V, class W, class Finder>
void DiffuseSerpentine(const DiffusionJob& job, const Finder& finder) {
    ForEachGroup(job, [&](const RowGroup& group) {
        for (unsigned row = 0; row < group.rows; ++row) {
            const RowScan scan(job, group, row);
            AddErrorsFromAbove<W>(scan, PlaceTaps(job, 0, job.firstOwnTap, scan.y));
            ScanRow<V>(scan, PlaceTaps(job, job.firstOwnTap, job.tapCount, scan.y), finder);
        }
    });
}

// A serpentine with a short palette. Four lanes are best, as the minimum over all lanes is fastest.
template <class W>
void DiffuseShortSerpentine(const DiffusionJob& job) {
    const PaletteTable& palette = *job.palette;
    const float weight = NeighbourWeight(job);
    if (palette.count <= 8)
        return DiffuseSerpentine<Vec4, W>(job, SerialSearch<Vec4, 2, BruteForceSearch<2>>(palette, weight));
    DiffuseSerpentine<Vec4, W>(job, SerialSearch<Vec4, 4, BruteForceSearch<4>>(palette, weight));
}

template <class V>
void DiffuseByBruteForce(const DiffusionJob& job) {
    const PaletteTable& palette = *job.palette;
    if (palette.count <= 4)
        return DiffuseRowsTogether<V>(job, BruteForceSearch<1>{palette});
    if (palette.count <= 8)
        return DiffuseRowsTogether<V>(job, BruteForceSearch<2>{palette});
    DiffuseRowsTogether<V>(job, BruteForceSearch<4>{palette});
}

// True for a serpentine whose search is so short that the scalar implementation is as fast.
inline bool IsFitForScalar(const DiffusionJob& job) {
    return job.serpentine &&
           (job.search == Search::Threshold || (job.search == Search::BruteForce && job.palette->count <= 4));
}

// All of error diffusion with vectors of four lanes.
template <class V>
void DiffuseWithFourLanes(const DiffusionJob& job) {
    static_assert(V::Lanes == 4);
    if (IsFitForScalar(job))
        return ScalarKernels.diffuse(job);
    switch (job.search) {
    case Search::Threshold:
        return DiffuseRowsTogether<V>(job, ThresholdSearch{*job.palette, job.threshold});
    case Search::BruteForce:
        return job.serpentine ? DiffuseShortSerpentine<V>(job) : DiffuseByBruteForce<V>(job);
    case Search::Grid:
        const GridSearch search{*job.grid, *job.palette};
        return job.serpentine ? DiffuseSerpentine<V, V>(job, search) : DiffuseRowsTogether<V>(job, search);
    }
}

} // namespace
} // namespace ImageLib::Simd
