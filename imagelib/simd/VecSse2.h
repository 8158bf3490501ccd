#pragma once

#include "imagelib/simd/X86Pixel.h"

#if defined(__SSE4_1__)
#include <smmintrin.h> // the baseline of compilers for macOS
#endif

// Four lanes of SSE2. The operations of all vector types are described in README.md.
namespace ImageLib::Simd {
namespace {

struct Vec4 : X86Pixel {
    static constexpr unsigned Lanes = 4;
    using Float = __m128;
    using Int = __m128i;

    static Float Splat(float value) { return _mm_set1_ps(value); }
    static Float Load(const float* from) { return _mm_loadu_ps(from); }
    static void Store(float* to, Float value) { _mm_storeu_ps(to, value); }

    template <int Channel>
    static Float Broadcast(Pixel pixel) {
        return _mm_shuffle_ps(pixel, pixel, Channel * 0x55);
    }

    static void LoadChannels(const void* from, std::ptrdiff_t stride, Float& alpha, Float& red, Float& green,
                             Float& blue) {
        const Float p0 = LoadStrided(from, stride, 0), p1 = LoadStrided(from, stride, 1);
        const Float p2 = LoadStrided(from, stride, 2), p3 = LoadStrided(from, stride, 3);
        const Float ar01 = _mm_unpacklo_ps(p0, p1), ar23 = _mm_unpacklo_ps(p2, p3);
        const Float gb01 = _mm_unpackhi_ps(p0, p1), gb23 = _mm_unpackhi_ps(p2, p3);
        alpha = _mm_movelh_ps(ar01, ar23);
        red = _mm_movehl_ps(ar23, ar01);
        green = _mm_movelh_ps(gb01, gb23);
        blue = _mm_movehl_ps(gb23, gb01);
    }

    // Indices ascend from call to call, so the larger index is the new one.
    static void KeepCloser(Float distance, int index, Float& best, Int& bestIndex) {
        const __m128i closer = _mm_castps_si128(_mm_cmplt_ps(distance, best));
        bestIndex = _mm_max_epi16(bestIndex, _mm_and_si128(closer, _mm_set1_epi32(index)));
        best = _mm_min_ps(distance, best);
    }
    static Int ZeroInt() { return _mm_setzero_si128(); }
    static void StoreInt(std::uint32_t* to, Int value) {
        _mm_storeu_si128(reinterpret_cast<__m128i*>(to), value);
    }

    static Float Min(Float first, Float second) { return _mm_min_ps(first, second); }
    static Float Smallest(Float value) {
        value = _mm_min_ps(value, _mm_shuffle_ps(value, value, 0x4E));
        return _mm_min_ps(value, _mm_shuffle_ps(value, value, 0xB1));
    }
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
    static unsigned LessLanes(Int left, Int right) {
        return static_cast<unsigned>(_mm_movemask_ps(_mm_castsi128_ps(_mm_cmplt_epi32(left, right))));
    }
    static float SquareOf(Pixel pixel) {
        const __m128 squares = _mm_mul_ps(pixel, pixel);
        const __m128 halves = _mm_add_ps(squares, _mm_shuffle_ps(squares, squares, 0x4E));
        return _mm_cvtss_f32(_mm_add_ps(halves, _mm_shuffle_ps(halves, halves, 0xB1)));
    }

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
    static bool AnyBits(Int value, Int mask) {
        const __m128i none = _mm_cmpeq_epi32(_mm_and_si128(value, mask), _mm_setzero_si128());
        return _mm_movemask_epi8(none) != 0xFFFF;
    }
};

} // namespace
} // namespace ImageLib::Simd
