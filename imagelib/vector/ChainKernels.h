#pragma once

#include "imagelib/vector/MapKernels.h"
#include "imagelib/vector/Taps.h"

// Error diffusion along one row with a short palette, for serpentines, where every pixel waits for the one
// before it. What counts is the time from one error to the next: the chosen colour is gathered by masks,
// without going through an index, and each channel stays spread over all lanes. V has four lanes, whose
// shuffles are fastest.
namespace ImageLib::Vector {
namespace {

// Entries without those equal to an earlier one, which can never win.
template <unsigned Vectors>
struct ChainTable {
    alignas(64) float channels[4][16];

    explicit ChainTable(const PaletteTable& palette) {
        unsigned used = 0;
        for (unsigned i = 0; i < palette.count; ++i) {
            bool isNew = true;
            for (unsigned earlier = 0; earlier < i; ++earlier)
                isNew = isNew && !(palette.entries[earlier] == palette.entries[i]);
            if (isNew)
                Set(used++, palette.entries[i]);
        }
        while (used < 16)
            Set(used++, {1e30f, 1e30f, 1e30f, 1e30f});
    }

private:
    void Set(unsigned lane, const Pixel32& colour) {
        channels[0][lane] = colour.alpha;
        channels[1][lane] = colour.red;
        channels[2][lane] = colour.green;
        channels[3][lane] = colour.blue;
    }
};

template <class V>
Channels<V> Spread(const Pixel32& pixel) {
    return {V::Splat(pixel.alpha), V::Splat(pixel.red), V::Splat(pixel.green), V::Splat(pixel.blue)};
}

template <class V>
void AddWeighted(Channels<V>& sum, typename V::Float weight, const Channels<V>& error) {
    sum.alpha = sum.alpha + weight * error.alpha;
    sum.red = sum.red + weight * error.red;
    sum.green = sum.green + weight * error.green;
    sum.blue = sum.blue + weight * error.blue;
}

// The nearest colour to the pixel that all lanes hold.
template <class V, unsigned Vectors>
class ChainSearch {
    using Float = typename V::Float;

public:
    explicit ChainSearch(const PaletteTable& palette) : m_Palette(palette), m_Table(palette) {}

    Channels<V> Find(const Channels<V>& pixel) const {
        Float distance[Vectors];
        for (unsigned i = 0; i < Vectors; ++i) {
            const Float a = pixel.alpha - Lanes(0, i), r = pixel.red - Lanes(1, i);
            const Float g = pixel.green - Lanes(2, i), b = pixel.blue - Lanes(3, i);
            distance[i] = a * a + r * r + g * g + b * b;
        }
        Float smallest = distance[0];
        if constexpr (Vectors == 2)
            smallest = V::Min(distance[0], distance[1]);
        if constexpr (Vectors == 4)
            smallest = V::Min(V::Min(distance[0], distance[1]), V::Min(distance[2], distance[3]));
        smallest = V::Smallest(smallest);

        Float nearest[Vectors];
        unsigned lanes = 0;
        for (unsigned i = 0; i < Vectors; ++i) {
            nearest[i] = V::EqualMask(distance[i], smallest);
            lanes |= V::MaskBits(nearest[i]) << (i * V::Lanes);
        }
        // Two at the same distance, or none near enough: seldom.
        if (__builtin_expect(lanes == 0 || (lanes & (lanes - 1)) || !(V::First(smallest) < StartDistance), 0))
            return FindPlain(pixel);
        return {Pick(0, nearest), Pick(1, nearest), Pick(2, nearest), Pick(3, nearest)};
    }

private:
    Float Lanes(unsigned channel, unsigned vector) const {
        return V::Load(m_Table.channels[channel] + vector * V::Lanes);
    }

    // The channel's value in the one lane that the masks leave, in all lanes.
    Float Pick(unsigned channel, const Float* masks) const {
        Float any = V::And(masks[0], Lanes(channel, 0));
        for (unsigned i = 1; i < Vectors; ++i)
            any = V::OrFloat(any, V::And(masks[i], Lanes(channel, i)));
        return V::OrLanes(any);
    }

    Channels<V> FindPlain(const Channels<V>& pixel) const {
        const Pixel32 plain{V::First(pixel.alpha), V::First(pixel.red), V::First(pixel.green),
                            V::First(pixel.blue)};
        return Spread<V>(m_Palette.entries[NearestEntry(plain, m_Palette)]);
    }

    const PaletteTable& m_Palette;
    ChainTable<Vectors> m_Table;
};

template <class Finder>
inline constexpr bool IsChain = false;
template <class V, unsigned Vectors>
inline constexpr bool IsChain<ChainSearch<V, Vectors>> = true;

// What is left of a row in scan order once the rows above are added. Most kernels end with the neighbour just
// done, whose error then needs no way through memory.
template <class V, unsigned Vectors>
void ScanRow(Pixel32* pixels, Pixel32* errors, std::uint32_t width, bool reversed, const TapList& own,
             const ChainSearch<V, Vectors>& search) {
    const std::ptrdiff_t direction = reversed ? -1 : 1;
    std::ptrdiff_t x = reversed ? static_cast<std::ptrdiff_t>(width) - 1 : 0;
    const PlacedTap* const taps = own.taps;
    const bool neighbourLast = own.count > 0 && taps[own.count - 1].offset == -direction;
    const unsigned others = own.count - neighbourLast;
    const auto weight = V::Splat(neighbourLast ? taps[others].weight : 0.0f);
    Channels<V> last = Spread<V>({0, 0, 0, 0});
    for (std::uint32_t i = 0; i < width; ++i, x += direction) {
        Channels<V> sum = Spread<V>(pixels[x]);
        for (unsigned t = 0; t < others; ++t)
            AddWeighted<V>(sum, V::Splat(taps[t].weight), Spread<V>(errors[x + taps[t].offset]));
        if (neighbourLast)
            AddWeighted<V>(sum, weight, last);
        const Channels<V> chosen = search.Find(sum);
        last = {sum.alpha - chosen.alpha, sum.red - chosen.red, sum.green - chosen.green,
                sum.blue - chosen.blue};
        V::StorePixel(pixels + x, V::Pack(chosen.alpha, chosen.red, chosen.green, chosen.blue));
        V::StorePixel(errors + x, V::Pack(last.alpha, last.red, last.green, last.blue));
    }
}

} // namespace
} // namespace ImageLib::Vector
