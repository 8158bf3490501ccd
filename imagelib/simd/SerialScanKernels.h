#pragma once

#include "imagelib/simd/DiffusionRows.h"
#include "imagelib/simd/MapKernels.h"

// Error diffusion along one row with a short palette, for serpentines. In a serpentine a row starts where the
// row above ends, so rows cannot overlap, and every pixel waits for the one before it. What limits the speed
// is the time from one choice to the next.
//
// The entry c nearest to a pixel v has the smallest |c|^2 - 2 v.c. With v = base + w (v' - c'), where v' is
// the pixel before and c' its entry, this is (|c|^2 - 2 (base + w v').c) + 2 w c'.c. The first part does not
// depend on the last choice, and the second part is a row of a table. So a choice costs one addition and one
// minimum. Both work on integers whose low bits hold the entry's index. The integers are approximations:
// where a second entry is within the bound of all rounding errors, or a value is very large, the exact search
// decides.
//
// The bound for two of these terms and the two exact distances together, with s = |v|^2, s' = |v'|^2 and e =
// 2^-24: a distance is below 2 s + 8 and takes six roundings, which gives 12 e s + 48 e; base + w v' differs
// from v + w c' by at most e (3 |v'| + 2 |v| + 3) a channel; and the terms, which are below 4 + 2 |base + w
// v'|, take five roundings more. With |v| <= (s + 1) / 2 the sum is less than e (19 s + 3 s' + 184). Two
// entries have twice that error, and two indices replace low bits. In units of 2^-20 this is less than 3 (s +
// s') + 80.
namespace ImageLib::Simd {
namespace {

// The precomputed parts of the terms above, in units of 2^-20: the squares of the entries, their products
// with a pixel, and the products of all pairs of entries.
class TermTable {
public:
    static constexpr int IndexMask = 15;          // the bits of a term that hold the entry's index
    static constexpr unsigned NoPredecessor = 16; // the row for a pixel whose predecessor does not matter

    // The approximation decides only when no second term is this near to the smallest one. squares: the sum
    // of the squares of the pixel and of its predecessor.
    static int ErrorBound(float squares) {
        return static_cast<int>(4 * (squares < LargestSquares ? squares : LargestSquares)) + 128;
    }
    // The largest sum of squares for which the approximation holds: no channel is beyond 128 then, and no
    // term beyond 2^30. Below zero when it never holds, because the palette or the weight is outside 0..1.
    float MaxSquares() const { return m_MaxSquares; }

    // weight: that of the predecessor's error.
    TermTable(const PaletteTable& palette, float weight) {
        bool isAccurate = weight >= 0.0f && weight <= 1.0f;
        for (unsigned i = 0; i < 16; ++i) {
            const Pixel32& colour = palette.entries[i];
            // An entry that equals an earlier one is never chosen.
            bool isUsed = i < palette.count;
            for (unsigned earlier = 0; isUsed && earlier < i; ++earlier)
                isUsed = !(IsSame(palette.entries[earlier], colour));
            isAccurate = isAccurate && (!isUsed || IsUnit(colour));
            m_Square[i] = isUsed ? UnitsPerOne * Product(colour, colour) : 1.5e9f;
            const float channels[4] = {colour.alpha, colour.red, colour.green, colour.blue};
            for (unsigned channel = 0; channel < 4; ++channel)
                m_MinusTwice[channel][i] = isUsed ? -2 * UnitsPerOne * channels[channel] : 0;
            for (unsigned row = 0; row < 16; ++row) {
                const bool isPair =
                    isUsed && row < palette.count && IsUnit(palette.entries[row]) && isAccurate;
                const float product = isPair ? 2 * weight * Product(palette.entries[row], colour) : 0;
                m_Cross[row][i] =
                    (static_cast<int>(UnitsPerOne * product) & ~IndexMask) | static_cast<int>(i);
            }
            m_Cross[NoPredecessor][i] = static_cast<int>(i);
        }
        m_MaxSquares = isAccurate ? LargestSquares : -1.0f;
    }

    const float* Square() const { return m_Square; }
    const float* MinusTwice(unsigned channel) const { return m_MinusTwice[channel]; }
    const int* Cross(unsigned chosen) const { return m_Cross[chosen]; }

private:
    static constexpr float UnitsPerOne = 1 << 20;
    static constexpr float LargestSquares = 128 * 128;

    static float Product(const Pixel32& left, const Pixel32& right) {
        return left.alpha * right.alpha + left.red * right.red + left.green * right.green +
               left.blue * right.blue;
    }
    // Not Pixel32's operator, whose compiled copy other sources might share.
    static bool IsSame(const Pixel32& left, const Pixel32& right) {
        return left.alpha == right.alpha && left.red == right.red && left.green == right.green &&
               left.blue == right.blue;
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
    int m_Cross[NoPredecessor + 1][16];
    float m_MaxSquares;
};

// Finds entries with `Vectors` vectors of V's lanes; Exact is the exact search.
template <class V, unsigned Vectors, class Exact>
struct SerialSearch {
    TermTable table;
    Exact exact;
    const PaletteTable& palette;

    SerialSearch(const PaletteTable& colours, float weight)
        : table(colours, weight), exact{colours}, palette(colours) {}

    // Finds the entry nearest to `pixel`. `ahead` is base + w v', which does not depend on the predecessor's
    // entry `previous`; `squares` is the sum of both pixels' squares.
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
            term[i] = V::AndInt(V::Round(first + second), V::SplatInt(~TermTable::IndexMask));
        }
        for (unsigned i = 0; i < Vectors; ++i)
            term[i] = V::AddInt(term[i], V::LoadInt(table.Cross(previous) + i * V::Lanes));
        Int smallest = term[0];
        for (unsigned i = 1; i < Vectors; ++i)
            smallest = V::MinInt(smallest, term[i]);
        const int winner = V::SmallestInt(smallest);

        // The rest only confirms the choice, and no later pixel waits for it.
        const Int limit = V::AddInt(V::SplatInt(winner), V::SplatInt(TermTable::ErrorBound(squares)));
        unsigned close = 0;
        for (unsigned i = 0; i < Vectors; ++i)
            close |= V::LessLanes(term[i], limit) << (i * V::Lanes);
        if (__builtin_expect((close & (close - 1)) != 0 || !(squares <= table.MaxSquares()), 0))
            return exact.template Find<V>(pixel);
        return static_cast<unsigned>(winner & TermTable::IndexMask);
    }
};

// The weight of the pixel scanned just before when it is the last one added to a sum, else 0.
inline float NeighbourWeight(const DiffusionJob& job) {
    const DiffusionTap& last = job.taps[job.tapCount - 1];
    return last.row == 0 && last.dx == -1 ? last.weight : 0.0f;
}

// Processes one row in its scan order, after the errors of the rows above have been added. Most kernels add
// the error of the pixel just processed last; it stays in registers then.
template <class V, unsigned Vectors, class Exact>
void ScanRow(const RowScan& row, const TapList& own, const SerialSearch<V, Vectors, Exact>& search) {
    using Pixel = typename V::Pixel;
    std::ptrdiff_t x = row.first;
    const PlacedTap* const taps = own.taps;
    const bool neighbourIsLast = own.count > 0 && taps[own.count - 1].offset == -row.direction;
    const unsigned others = own.count - neighbourIsLast;
    const Pixel weight = V::SplatPixel(neighbourIsLast ? taps[others].weight : 0.0f);
    Pixel before = V::SplatPixel(0.0f), error = before;
    float squareBefore = 0.0f;
    unsigned chosen = TermTable::NoPredecessor;
    for (std::uint32_t i = 0; i < row.width; ++i, x += row.direction) {
        Pixel pixel = V::LoadPixel(row.pixels + x);
        for (unsigned t = 0; t < others; ++t)
            pixel = pixel + V::SplatPixel(taps[t].weight) * V::LoadPixel(row.errors + x + taps[t].offset);
        Pixel ahead = pixel;
        if (neighbourIsLast) {
            ahead = pixel + weight * before;
            pixel = pixel + weight * error;
        }
        const float square = V::SquareOf(pixel);
        chosen = search.Find(pixel, ahead, neighbourIsLast ? chosen : TermTable::NoPredecessor,
                             square + squareBefore);
        const Pixel colour = V::LoadPixel(search.palette.entries + chosen);
        before = pixel;
        squareBefore = square;
        error = pixel - colour;
        V::StorePixel(row.pixels + x, colour);
        V::StorePixel(row.errors + x, error);
    }
}

} // namespace
} // namespace ImageLib::Simd
