#pragma once

#include "imagelib/vector/MapKernels.h"
#include "imagelib/vector/Taps.h"

// Error diffusion along one row with a short palette, for serpentines, where every pixel waits for the one
// before it. What counts is the time from one choice to the next.
//
// The entry c nearest to a pixel v has the smallest |c|^2 - 2 v.c. With v = base + w (v' - c'), where v' is
// the pixel before and c' its entry, that is (|c|^2 - 2 (base + w v').c) + 2 w c'.c: the first part does not
// wait for the last choice, and the second one is a row of a table. So a choice costs one addition and one
// minimum. Both are done on integers, whose low bits hold the entry's index. They are not exact: where a
// second entry is within what all rounding can amount to, or a value is very large, the full search decides.
//
// How far off two of these terms and the two exact distances can be together, with s = |v|^2, s' = |v'|^2 and
// e = 2^-24: a distance is below 2 s + 8 and takes six roundings, so 12 e s + 48 e; base + w v' differs from
// v + w c' by e (3 |v'| + 2 |v| + 3) a channel at most, and the terms, below 4 + 2 |base + w v'|, take five
// roundings more. With |v| <= (s + 1) / 2 all of it is less than e (19 s + 3 s' + 184), twice that for two,
// and two cut-off indices. In units of 2^-20 that is less than 3 (s + s') + 80.
namespace ImageLib::Vector {
namespace {

// An entry's square, its product with a pixel, and the products of all pairs, 2^20 to 1.
class ChainTable {
public:
    static constexpr int kIndexBits = 15;
    static constexpr unsigned kNone = 16; // the row for a pixel that follows none

    // How near a second term makes the choice doubtful, for the squares of the pixel and the one before.
    static int Doubt(float squares) {
        return static_cast<int>(4 * (squares < kMost ? squares : kMost)) + 128;
    }
    // The largest sum of squares that is served: no channel is beyond 128 then, and no term beyond 2^30.
    // Below zero where none is.
    float MostSquares() const { return m_MostSquares; }

    // `weight` is that of the neighbour's error.
    ChainTable(const PaletteTable& palette, float weight) {
        bool isServed = weight >= 0.0f && weight <= 1.0f;
        for (unsigned i = 0; i < 16; ++i) {
            const Pixel32& colour = palette.entries[i];
            // An entry equal to an earlier one never wins.
            bool isUsed = i < palette.count;
            for (unsigned earlier = 0; isUsed && earlier < i; ++earlier)
                isUsed = !(palette.entries[earlier] == colour);
            isServed = isServed && (!isUsed || IsUnit(colour));
            m_Square[i] = isUsed ? kScale * Product(colour, colour) : 1.5e9f;
            const float channels[4] = {colour.alpha, colour.red, colour.green, colour.blue};
            for (unsigned channel = 0; channel < 4; ++channel)
                m_MinusTwice[channel][i] = isUsed ? -2 * kScale * channels[channel] : 0;
            for (unsigned row = 0; row < 16; ++row) {
                const bool isPair = isUsed && row < palette.count && IsUnit(palette.entries[row]) && isServed;
                const float product = isPair ? 2 * weight * Product(palette.entries[row], colour) : 0;
                m_Cross[row][i] = (static_cast<int>(kScale * product) & ~kIndexBits) | static_cast<int>(i);
            }
            m_Cross[kNone][i] = static_cast<int>(i);
        }
        m_MostSquares = isServed ? kMost : -1.0f;
    }

    const float* Square() const { return m_Square; }
    const float* MinusTwice(unsigned channel) const { return m_MinusTwice[channel]; }
    const int* Cross(unsigned chosen) const { return m_Cross[chosen]; }

private:
    static constexpr float kScale = 1 << 20;
    static constexpr float kMost = 128 * 128;

    static float Product(const Pixel32& left, const Pixel32& right) {
        return left.alpha * right.alpha + left.red * right.red + left.green * right.green +
               left.blue * right.blue;
    }
    static bool IsUnit(const Pixel32& colour) {
        const float channels[4] = {colour.alpha, colour.red, colour.green, colour.blue};
        bool isUnit = true;
        for (const float value : channels)
            isUnit = isUnit && value >= 0.0f && value <= 1.0f;
        return isUnit;
    }

    alignas(64) float m_Square[16];
    float m_MinusTwice[4][16];
    int m_Cross[kNone + 1][16];
    float m_MostSquares;
};

// Searches with V's lanes in Vectors vectors; Exact is the full search.
template <class V, unsigned Vectors, class Exact>
struct ChainSearch {
    ChainTable table;
    Exact exact;
    const PaletteTable& palette;

    ChainSearch(const PaletteTable& colours, float weight)
        : table(colours, weight), exact{colours}, palette(colours) {}

    // The entry nearest to `pixel`. `ahead` is the pixel as if the one before had left no colour, `previous`
    // the entry that it has left, and `squares` the sum of both pixels' squares.
    unsigned Find(typename V::Pixel pixel, typename V::Pixel ahead, unsigned previous, float squares) const {
        using Float = typename V::Float;
        using Int = typename V::Int;
        const Float alpha = V::template Broadcast<0>(ahead), red = V::template Broadcast<1>(ahead);
        const Float green = V::template Broadcast<2>(ahead), blue = V::template Broadcast<3>(ahead);
        Int term[Vectors];
        for (unsigned i = 0; i < Vectors; ++i) {
            const unsigned from = i * V::Lanes;
            const Float first =
                (V::Load(table.Square() + from) + alpha * V::Load(table.MinusTwice(0) + from)) +
                red * V::Load(table.MinusTwice(1) + from);
            const Float second =
                green * V::Load(table.MinusTwice(2) + from) + blue * V::Load(table.MinusTwice(3) + from);
            term[i] = V::AndInt(V::Round(first + second), V::SplatInt(~ChainTable::kIndexBits));
        }
        for (unsigned i = 0; i < Vectors; ++i)
            term[i] = V::AddInt(term[i], V::LoadInt(table.Cross(previous) + i * V::Lanes));
        Int smallest = term[0];
        for (unsigned i = 1; i < Vectors; ++i)
            smallest = V::MinInt(smallest, term[i]);
        const int winner = V::SmallestInt(smallest);

        // What follows only confirms the choice, and nothing waits for it.
        const Int limit = V::AddInt(V::SplatInt(winner), V::SplatInt(ChainTable::Doubt(squares)));
        unsigned near = 0;
        for (unsigned i = 0; i < Vectors; ++i)
            near |= V::LessLanes(term[i], limit) << (i * V::Lanes);
        if (__builtin_expect((near & (near - 1)) != 0 || !(squares <= table.MostSquares()), 0))
            return exact.template Find<V>(pixel);
        return static_cast<unsigned>(winner & ChainTable::kIndexBits);
    }
};

template <class Finder>
inline constexpr bool IsChain = false;
template <class V, unsigned Vectors, class Exact>
inline constexpr bool IsChain<ChainSearch<V, Vectors, Exact>> = true;

// The weight of the neighbour scanned just before, if it is the last to be added; else 0.
inline float NeighbourWeight(const DiffusionJob& job) {
    const DiffusionTap& last = job.taps[job.tapCount - 1];
    return last.row == 0 && last.dx == -1 ? last.weight : 0.0f;
}

// What is left of a row in scan order once the rows above are added. Most kernels end with the neighbour just
// done, whose error then needs no way through memory.
template <class V, unsigned Vectors, class Exact>
void ScanRow(Pixel32* pixels, Pixel32* errors, std::uint32_t width, bool reversed, const TapList& own,
             const ChainSearch<V, Vectors, Exact>& search) {
    using Pixel = typename V::Pixel;
    const std::ptrdiff_t direction = reversed ? -1 : 1;
    std::ptrdiff_t x = reversed ? static_cast<std::ptrdiff_t>(width) - 1 : 0;
    const PlacedTap* const taps = own.taps;
    const bool neighbourLast = own.count > 0 && taps[own.count - 1].offset == -direction;
    const unsigned others = own.count - neighbourLast;
    const Pixel weight = V::SplatPixel(neighbourLast ? taps[others].weight : 0.0f);
    Pixel before = V::SplatPixel(0.0f), error = before;
    float squareBefore = 0.0f;
    unsigned chosen = ChainTable::kNone;
    for (std::uint32_t i = 0; i < width; ++i, x += direction) {
        Pixel pixel = V::LoadPixel(pixels + x);
        for (unsigned t = 0; t < others; ++t)
            pixel = pixel + V::SplatPixel(taps[t].weight) * V::LoadPixel(errors + x + taps[t].offset);
        Pixel ahead = pixel;
        if (neighbourLast) {
            ahead = pixel + weight * before;
            pixel = pixel + weight * error;
        }
        const float square = V::SquareOf(pixel);
        chosen = search.Find(pixel, ahead, neighbourLast ? chosen : ChainTable::kNone, square + squareBefore);
        const Pixel colour = V::LoadPixel(search.palette.entries + chosen);
        before = pixel;
        squareBefore = square;
        error = pixel - colour;
        V::StorePixel(pixels + x, colour);
        V::StorePixel(errors + x, error);
    }
}

} // namespace
} // namespace ImageLib::Vector
