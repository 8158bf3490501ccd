#pragma once

#include "imagelib/vector/PixelCell.h"

#include <emmintrin.h>

// Four lanes of SSE2, present on every x86-64 processor. In an unnamed namespace: each source has its own
// copy, built for its own processor.
namespace ImageLib::Vector {
namespace {

struct Vec4 {
    static constexpr unsigned Lanes = 4;
    using Float = __m128;
    using Int = __m128i;
    using Pixel = __m128; // alpha, red, green, blue

    static Float Splat(float value) { return _mm_set1_ps(value); }
    static Float Load(const float* from) { return _mm_loadu_ps(from); }
    static void Store(float* to, Float value) { _mm_storeu_ps(to, value); }
    static Pixel LoadPixel(const Pixel32* from) { return _mm_loadu_ps(&from->alpha); }
    static void StorePixel(Pixel32* to, Pixel value) { _mm_storeu_ps(&to->alpha, value); }
    static Pixel SplatPixel(float value) { return _mm_set1_ps(value); }
    static float Red(Pixel pixel) { return _mm_cvtss_f32(_mm_shuffle_ps(pixel, pixel, 1)); }

    // A channel of the pixel in all lanes.
    template <int Channel>
    static Float Broadcast(Pixel pixel) {
        return _mm_shuffle_ps(pixel, pixel, Channel * 0x55);
    }

    // The channels of `Lanes` pixels, lane i from the pixel `step` * i bytes on.
    static void LoadChannels(const void* from, std::ptrdiff_t step, Float& alpha, Float& red, Float& green,
                             Float& blue) {
        const auto pixel = [&](int i) {
            return LoadPixel(reinterpret_cast<const Pixel32*>(static_cast<const char*>(from) + step * i));
        };
        Transpose(pixel(0), pixel(1), pixel(2), pixel(3), alpha, red, green, blue);
    }

    // Takes over distance and index in the lanes where the distance is strictly smaller. Indices grow from
    // call to call, so their larger one is the new one.
    static void KeepCloser(Float distance, int index, Float& best, Int& bestIndex) {
        const __m128i closer = _mm_castps_si128(_mm_cmplt_ps(distance, best));
        bestIndex = _mm_max_epi16(bestIndex, _mm_and_si128(closer, _mm_set1_epi32(index)));
        best = _mm_min_ps(distance, best);
    }
    // The same with an index for each lane, all larger than those before.
    static void KeepCloser(Float distance, Int index, Float& best, Int& bestIndex) {
        const __m128i closer = _mm_castps_si128(_mm_cmplt_ps(distance, best));
        bestIndex = _mm_max_epi16(bestIndex, _mm_and_si128(closer, index));
        best = _mm_min_ps(distance, best);
    }
    // The channels of the entries, sixteen at most, with the lanes' indices.
    static void LookUp(const PaletteTable& palette, Int index, Float& alpha, Float& red, Float& green,
                       Float& blue) {
        alignas(16) std::uint32_t lane[4];
        StoreInt(lane, index);
        Transpose(LoadPixel(palette.entries + lane[0]), LoadPixel(palette.entries + lane[1]),
                  LoadPixel(palette.entries + lane[2]), LoadPixel(palette.entries + lane[3]), alpha, red,
                  green, blue);
    }
    static Int ZeroInt() { return _mm_setzero_si128(); }
    static void StoreInt(std::uint32_t* to, Int value) {
        _mm_storeu_si128(reinterpret_cast<__m128i*>(to), value);
    }

    // The smaller one; `second` where `first` is NaN.
    static Float Min(Float first, Float second) { return _mm_min_ps(first, second); }
    // The smallest lane, in all lanes.
    static Float Smallest(Float value) {
        value = _mm_min_ps(value, _mm_shuffle_ps(value, value, 0x4E));
        return _mm_min_ps(value, _mm_shuffle_ps(value, value, 0xB1));
    }
    // Bit i: lanes i are equal.
    static unsigned EqualLanes(Float left, Float right) {
        return static_cast<unsigned>(_mm_movemask_ps(_mm_cmpeq_ps(left, right)));
    }

    static Int Round(Float value) { return _mm_cvtps_epi32(value); }
    static Int LoadInt(const int* from) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from)); }
    static Int AddInt(Int left, Int right) { return _mm_add_epi32(left, right); }
    static Int AndInt(Int left, Int right) { return _mm_and_si128(left, right); }
    static Int MinInt(Int left, Int right) {
#if defined(__SSE4_1__)
        return _mm_min_epi32(left, right);
#else
        const __m128i isLess = _mm_cmplt_epi32(left, right);
        return _mm_or_si128(_mm_and_si128(isLess, left), _mm_andnot_si128(isLess, right));
#endif
    }
    static int SmallestInt(Int value) {
        value = MinInt(value, _mm_shuffle_epi32(value, 0x4E));
        return _mm_cvtsi128_si32(MinInt(value, _mm_shuffle_epi32(value, 0xB1)));
    }
    // Bit i: lane i of left is the smaller one.
    static unsigned LessLanes(Int left, Int right) {
        return static_cast<unsigned>(_mm_movemask_ps(_mm_castsi128_ps(_mm_cmplt_epi32(left, right))));
    }
    // The sum of the channels' squares, in any order.
    static float SquareOf(Pixel pixel) {
        const __m128 squares = _mm_mul_ps(pixel, pixel);
        const __m128 halves = _mm_add_ps(squares, _mm_shuffle_ps(squares, squares, 0x4E));
        return _mm_cvtss_f32(_mm_add_ps(halves, _mm_shuffle_ps(halves, halves, 0xB1)));
    }

    // The grid's cell of a pixel; false outside the grid and for NaN.
    static bool FindCell(Pixel pixel, const CellGrid& grid, std::uint32_t& cell) {
        return FindPixelCell(pixel, grid, cell);
    }
    // Towards zero; a value out of range or NaN gives an integer with high bits set.
    static Int Truncate(Float value) {
        return _mm_cvttps_epi32(value);
    }
    static Int SplatInt(int value) {
        return _mm_set1_epi32(value);
    }
    static Int Or(Int left, Int right) {
        return _mm_or_si128(left, right);
    }
    static Int ShiftLeft(Int value, unsigned bits) {
        return _mm_sll_epi32(value, _mm_cvtsi32_si128(bits));
    }
    // Whether a lane of value has a bit of mask.
    static bool AnyBits(Int value, Int mask) {
        const __m128i none = _mm_cmpeq_epi32(_mm_and_si128(value, mask), _mm_setzero_si128());
        return _mm_movemask_epi8(none) != 0xFFFF;
    }

    static void Transpose(Float p0, Float p1, Float p2, Float p3, Float& alpha, Float& red, Float& green,
                          Float& blue) {
        const Float ar01 = _mm_unpacklo_ps(p0, p1), ar23 = _mm_unpacklo_ps(p2, p3);
        const Float gb01 = _mm_unpackhi_ps(p0, p1), gb23 = _mm_unpackhi_ps(p2, p3);
        alpha = _mm_movelh_ps(ar01, ar23);
        red = _mm_movehl_ps(ar23, ar01);
        green = _mm_movelh_ps(gb01, gb23);
        blue = _mm_movehl_ps(gb23, gb01);
    }
};

} // namespace
} // namespace ImageLib::Vector
