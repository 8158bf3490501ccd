#pragma once

#include "imagelib/vector/BandKernels.h"

// Error diffusion. A pixel gathers what earlier pixels scatter in the plain loop, in the same order: first
// from the rows above, the topmost first, then from its own row, each row in scan order. So a row may follow
// the one above it at a few pixels' distance, and several rows advance together. Pixels outside the picture
// count as errors of zero, which changes no sum but the sign of a zero.
namespace ImageLib::Vector {
namespace {

struct ThresholdSearch {
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
        const Channels<V> all{V::template Broadcast<0>(pixel), V::template Broadcast<1>(pixel),
                              V::template Broadcast<2>(pixel), V::template Broadcast<3>(pixel)};
        alignas(64) std::uint32_t cell[V::Lanes];
        if (FindCells<V>(all, grid, cell))
            return NearestInCell<V>(all, grid, cell[0]);
        Pixel32 plain;
        V::StorePixel(&plain, pixel);
        return NearestEntry(plain, palette);
    }
};

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

template <class V>
typename V::Pixel Gather(typename V::Pixel sum, const Pixel32* error, const PlacedTap* taps, unsigned count) {
    for (unsigned i = 0; i < count; ++i)
        sum = sum + V::SplatPixel(taps[i].weight) * V::LoadPixel(error + taps[i].offset);
    return sum;
}

template <class V, class Finder>
typename V::Pixel ReplacePixel(typename V::Pixel sum, Pixel32* pixel, Pixel32* error, const Pixel32* entries,
                               const Finder& finder) {
    const typename V::Pixel chosen = V::LoadPixel(entries + finder.template Find<V>(sum));
    const typename V::Pixel difference = sum - chosen;
    V::StorePixel(pixel, chosen);
    V::StorePixel(error, difference);
    return difference;
}

struct Band {
    Pixel32* pixels[BandRows];
    Pixel32* errors[BandRows];
    unsigned rows;
};

// All rows of the band left to right, each `lag` pixels behind the one above.
template <class V, class Finder>
void DiffuseTogether(const DiffusionJob& job, const Band& band, const TapList& list, const Finder& finder) {
    const Pixel32* const entries = job.palette->entries;
    const auto width = static_cast<std::ptrdiff_t>(job.width);
    const std::ptrdiff_t steps = width + std::ptrdiff_t{job.lag} * (band.rows - 1);
    for (std::ptrdiff_t step = 0; step < steps; ++step) {
        for (unsigned row = 0; row < band.rows; ++row) {
            const std::ptrdiff_t x = step - std::ptrdiff_t{job.lag} * row;
            if (x < 0 || x >= width)
                continue;
            Pixel32* const error = band.errors[row] + x;
            const auto sum = Gather<V>(V::LoadPixel(band.pixels[row] + x), error, list.taps, list.count);
            ReplacePixel<V>(sum, band.pixels[row] + x, error, entries, finder);
        }
    }
}

// One row in scan order. What comes from the rows above is added first, for the whole row at once, as it
// does not wait for the row's own errors.
template <class V, class Finder>
void DiffuseRow(const DiffusionJob& job, Pixel32* pixels, Pixel32* errors, std::uint32_t y,
                const Finder& finder) {
    const TapList above = PlaceTaps(job, 0, job.ownTap, y);
    for (std::uint32_t x = 0; x < job.width; ++x)
        V::StorePixel(pixels + x, Gather<V>(V::LoadPixel(pixels + x), errors + x, above.taps, above.count));

    const TapList own = PlaceTaps(job, job.ownTap, job.tapCount, y);
    const std::ptrdiff_t direction = y & 1 ? -1 : 1;
    std::ptrdiff_t x = y & 1 ? static_cast<std::ptrdiff_t>(job.width) - 1 : 0;
    const Pixel32* const entries = job.palette->entries;
    // Nearly all kernels end with the neighbour just done, whose error then needs no way through memory.
    const bool neighbourLast = own.count > 0 && own.taps[own.count - 1].offset == -direction;
    const unsigned others = own.count - neighbourLast;
    const auto weight = V::SplatPixel(neighbourLast ? own.taps[others].weight : 0.0f);
    auto last = V::SplatPixel(0.0f);
    for (std::uint32_t i = 0; i < job.width; ++i, x += direction) {
        auto sum = Gather<V>(V::LoadPixel(pixels + x), errors + x, own.taps, others);
        if (neighbourLast)
            sum = sum + weight * last;
        last = ReplacePixel<V>(sum, pixels + x, errors + x, entries, finder);
    }
}

template <class V, class Finder>
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
        if (job.serpentine) {
            for (unsigned row = 0; row < band.rows; ++row)
                DiffuseRow<V>(job, band.pixels[row], band.errors[row], y + row, finder);
        } else {
            DiffuseTogether<V>(job, band, list, finder);
        }
        // The band's last rows of errors become those above the next band.
        for (unsigned row = 0; row < job.rowsAbove; ++row)
            __builtin_memcpy(job.errors + row * job.errorStride,
                             job.errors + (row + BandRows) * job.errorStride, job.width * sizeof(Pixel32));
    }
}

template <class V>
void DiffuseByForce(const DiffusionJob& job) {
    if (IsFitForBands<V>(job))
        return DiffuseBands<V>(job);
    const unsigned count = job.palette->count;
    if constexpr (V::Lanes == 4) {
        if (count <= 4)
            return DiffuseWith<V>(job, BruteForceSearch<1>{*job.palette});
    }
    if constexpr (V::Lanes <= 8) {
        if (count <= 8)
            return DiffuseWith<V>(job, BruteForceSearch<8 / V::Lanes>{*job.palette});
    }
    DiffuseWith<V>(job, BruteForceSearch<16 / V::Lanes>{*job.palette});
}

template <class V, class G>
void Diffuse(const DiffusionJob& job) {
    switch (job.search) {
    case Search::Threshold:
        return DiffuseWith<G>(job, ThresholdSearch{job.threshold});
    case Search::BruteForce:
        return DiffuseByForce<V>(job);
    case Search::Grid:
        return DiffuseWith<G>(job, GridSearch{*job.grid, *job.palette});
    }
}

} // namespace
} // namespace ImageLib::Vector
