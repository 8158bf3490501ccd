#pragma once

#include "imagelib/vector/BandKernels.h"
#include "imagelib/vector/ChainKernels.h"

// Error diffusion. A pixel gathers what earlier pixels scatter in the plain loop, in the same order: first
// from the rows above, the topmost first, then from its own row, each row in scan order. So a row may follow
// the one above it at a few pixels' distance, and several rows advance together. Pixels outside the picture
// count as errors of zero, which changes no sum but the sign of a zero.
namespace ImageLib::Vector {
namespace {

struct ThresholdSearch {
    const PaletteTable& palette;
    float threshold;

    template <class V>
    unsigned Find(typename V::Pixel pixel) const {
        return V::Red(pixel) > threshold ? 0 : 1;
    }
};

// All entries at once, in Vectors vectors.
template <unsigned Vectors>
struct BruteForceSearch {
    const PaletteTable& palette;

    template <class V>
    unsigned Find(typename V::Pixel pixel) const {
        using Float = typename V::Float;
        const Float alpha = V::template Broadcast<0>(pixel), red = V::template Broadcast<1>(pixel);
        const Float green = V::template Broadcast<2>(pixel), blue = V::template Broadcast<3>(pixel);
        // The largest float below the start distance: no entry equals it unless it is near enough to count.
        Float smallest = V::Splat(999999.9375f);
        Float distance[Vectors];
        for (unsigned i = 0; i < Vectors; ++i) {
            const unsigned from = i * V::Lanes;
            const Float a = alpha - V::Load(palette.alpha + from), r = red - V::Load(palette.red + from);
            const Float g = green - V::Load(palette.green + from), b = blue - V::Load(palette.blue + from);
            distance[i] = a * a + r * r + g * g + b * b;
            smallest = V::Min(distance[i], smallest);
        }
        smallest = V::Smallest(smallest);
        unsigned equal = 1u << (Vectors * V::Lanes); // where none is near: entry 0, after the mask below
        for (unsigned i = 0; i < Vectors; ++i)
            equal |= V::EqualLanes(distance[i], smallest) << (i * V::Lanes);
        return __builtin_ctz(equal) & (Vectors * V::Lanes - 1);
    }
};

struct GridSearch {
    CellGrid& grid;
    const PaletteTable& palette;

    template <class V>
    unsigned Find(typename V::Pixel pixel) const {
        std::uint32_t cell;
        if (V::FindCell(pixel, grid, cell)) {
            const std::uint32_t code = CodeOf(grid, cell);
            if (IsSingle(code))
                return SingleOf(code);
            const Channels<V> all{V::template Broadcast<0>(pixel), V::template Broadcast<1>(pixel),
                                  V::template Broadcast<2>(pixel), V::template Broadcast<3>(pixel)};
            return NearestCandidate<V>(all, grid.blocks + (code >> 6), code & 63, grid.emptySlot);
        }
        Pixel32 plain;
        V::StorePixel(&plain, pixel);
        return NearestEntry(plain, palette);
    }
};

template <class V>
typename V::Pixel Gather(typename V::Pixel sum, const Pixel32* error, const PlacedTap* taps, unsigned count) {
    for (unsigned i = 0; i < count; ++i)
        sum = sum + V::SplatPixel(taps[i].weight) * V::LoadPixel(error + taps[i].offset);
    return sum;
}

template <class V, class Finder>
void ReplacePixel(typename V::Pixel sum, Pixel32* pixel, Pixel32* error, const Finder& finder) {
    const typename V::Pixel chosen = V::LoadPixel(finder.palette.entries + finder.template Find<V>(sum));
    V::StorePixel(pixel, chosen);
    V::StorePixel(error, sum - chosen);
}

struct Band {
    Pixel32* pixels[BandRows];
    Pixel32* errors[BandRows];
    unsigned rows;
};

// All rows of the band left to right, each `lag` pixels behind the one above.
template <class V, class Finder>
void DiffuseTogether(const DiffusionJob& job, const Band& band, const TapList& list, const Finder& finder) {
    const auto width = static_cast<std::ptrdiff_t>(job.width);
    const std::ptrdiff_t steps = width + std::ptrdiff_t{job.lag} * (band.rows - 1);
    for (std::ptrdiff_t step = 0; step < steps; ++step) {
        for (unsigned row = 0; row < band.rows; ++row) {
            const std::ptrdiff_t x = step - std::ptrdiff_t{job.lag} * row;
            if (x < 0 || x >= width)
                continue;
            Pixel32* const error = band.errors[row] + x;
            const auto sum = Gather<V>(V::LoadPixel(band.pixels[row] + x), error, list.taps, list.count);
            ReplacePixel<V>(sum, band.pixels[row] + x, error, finder);
        }
    }
}

// What is left of a row in scan order once the rows above are added.
template <class V, class Finder>
void ScanRow(Pixel32* pixels, Pixel32* errors, std::uint32_t width, bool reversed, const TapList& own,
             const Finder& finder) {
    const std::ptrdiff_t direction = reversed ? -1 : 1;
    std::ptrdiff_t x = reversed ? static_cast<std::ptrdiff_t>(width) - 1 : 0;
    for (std::uint32_t i = 0; i < width; ++i, x += direction) {
        const auto sum = Gather<V>(V::LoadPixel(pixels + x), errors + x, own.taps, own.count);
        ReplacePixel<V>(sum, pixels + x, errors + x, finder);
    }
}

// Adds what comes from the rows above to a whole row. All channels have the same weights, so a row is just
// floats.
template <class W>
void AddAbove(Pixel32* pixels, const Pixel32* errors, std::uint32_t width, const TapList& list) {
    float* const sums = &pixels->alpha;
    const float* const sources = &errors->alpha;
    const std::size_t count = std::size_t{width} * 4;
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

// One row in scan order. What comes from the rows above is added first, as it does not wait for the row's own
// errors.
template <class V, class W, class Finder>
void DiffuseRow(const DiffusionJob& job, Pixel32* pixels, Pixel32* errors, std::uint32_t y,
                const Finder& finder) {
    AddAbove<W>(pixels, errors, job.width, PlaceTaps(job, 0, job.ownTap, y));
    ScanRow<V>(pixels, errors, job.width, y & 1, PlaceTaps(job, job.ownTap, job.tapCount, y), finder);
}

// V searches for one pixel, W takes whole rows.
template <class V, class W, class Finder>
void DiffuseWith(const DiffusionJob& job, const Finder& finder) {
    const TapList list = PlaceTaps(job, 0, job.tapCount, 0);
    Pixel32* const firstRow = job.errors + job.rowsAbove * job.errorStride;
    for (std::uint32_t y = 0; y < job.height; y += BandRows) {
        Band band;
        band.rows = job.height - y < BandRows ? job.height - y : BandRows;
        for (unsigned row = 0; row < band.rows; ++row) {
            band.pixels[row] = reinterpret_cast<Pixel32*>(job.pixels + (y + row) * job.stride);
            band.errors[row] = firstRow + row * job.errorStride;
        }
        if (job.serpentine || IsChain<Finder>) {
            for (unsigned row = 0; row < band.rows; ++row)
                DiffuseRow<V, W>(job, band.pixels[row], band.errors[row], y + row, finder);
        } else if constexpr (!IsChain<Finder>) {
            DiffuseTogether<V>(job, band, list, finder);
        }
        // The band's last rows of errors become those above the next band.
        for (unsigned row = 0; row < job.rowsAbove; ++row)
            __builtin_memcpy(job.errors + row * job.errorStride,
                             job.errors + (row + BandRows) * job.errorStride, job.width * sizeof(Pixel32));
    }
}

template <unsigned Vectors>
using ChainSearch4 = ChainSearch<Vec4, Vectors, BruteForceSearch<Vectors>>;

// Four lanes, whose minimum over all of them is fastest.
template <class W>
void DiffuseSerpentine(const DiffusionJob& job) {
    const PaletteTable& palette = *job.palette;
    const float weight = NeighbourWeight(job);
    if (palette.count <= 4)
        return DiffuseWith<Vec4, W>(job, ChainSearch4<1>(palette, weight));
    if (palette.count <= 8)
        return DiffuseWith<Vec4, W>(job, ChainSearch4<2>(palette, weight));
    DiffuseWith<Vec4, W>(job, ChainSearch4<4>(palette, weight));
}

template <class V>
void DiffuseByForce(const DiffusionJob& job) {
    if (job.serpentine)
        return DiffuseSerpentine<V>(job);
    if (IsFitForBands<V>(job))
        return DiffuseBands<V>(job);
    const unsigned count = job.palette->count;
    if constexpr (V::Lanes == 4) {
        if (count <= 4)
            return DiffuseWith<V, V>(job, BruteForceSearch<1>{*job.palette});
    }
    if constexpr (V::Lanes <= 8) {
        if (count <= 8)
            return DiffuseWith<V, V>(job, BruteForceSearch<8 / V::Lanes>{*job.palette});
    }
    DiffuseWith<V, V>(job, BruteForceSearch<16 / V::Lanes>{*job.palette});
}

template <class V, class G>
void Diffuse(const DiffusionJob& job) {
    switch (job.search) {
    case Search::Threshold:
        return DiffuseWith<G, V>(job, ThresholdSearch{*job.palette, job.threshold});
    case Search::BruteForce:
        return DiffuseByForce<V>(job);
    case Search::Grid:
        return DiffuseWith<G, V>(job, GridSearch{*job.grid, *job.palette});
    }
}

} // namespace
} // namespace ImageLib::Vector
