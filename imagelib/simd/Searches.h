#pragma once

#include "imagelib/simd/MapKernels.h"

// Finding the palette entry of a single pixel: one class for each value of Search.
namespace ImageLib::Simd {
namespace {

struct ThresholdSearch {
    const PaletteTable& palette;
    float threshold;

    template <class V>
    unsigned Find(typename V::Pixel pixel) const {
        return V::Red(pixel) > threshold ? 0 : 1;
    }
};

// Compares with all entries at once, which fill `Vectors` vectors.
template <unsigned Vectors>
struct BruteForceSearch {
    const PaletteTable& palette;

    template <class V>
    unsigned Find(typename V::Pixel pixel) const {
        using Float = typename V::Float;
        const Float alpha = V::template Broadcast<0>(pixel), red = V::template Broadcast<1>(pixel);
        const Float green = V::template Broadcast<2>(pixel), blue = V::template Broadcast<3>(pixel);
        // The largest float below s_StartDistance: no entry has this distance unless it is near enough to
        // count.
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
        unsigned equal =
            1u << (Vectors * V::Lanes); // gives entry 0 after the mask below when no entry is near
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
            const CellCode code = grid.CodeOf(cell);
            if (code.IsSingle())
                return code.Entry();
            const Channels<V> all{V::template Broadcast<0>(pixel), V::template Broadcast<1>(pixel),
                                  V::template Broadcast<2>(pixel), V::template Broadcast<3>(pixel)};
            return NearestCandidate<V>(all, grid, code);
        }
        Pixel32 outside;
        V::StorePixel(&outside, pixel);
        return NearestEntry(outside, palette);
    }
};

} // namespace
} // namespace ImageLib::Simd
