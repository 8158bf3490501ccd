#pragma once

#include "imagelib/simd/X86Pixel.h"

#include <immintrin.h>

// Sixteen lanes of AVX-512, for the algorithms that gain from it. The operations are described in README.md.
namespace ImageLib::Simd {
namespace {

struct Vec16 : X86Pixel {
    static constexpr unsigned Lanes = 16;
    using Float = __m512;
    using Int = __m512i;

    static Float Splat(float value) { return _mm512_set1_ps(value); }
    static Float Load(const float* from) { return _mm512_loadu_ps(from); }
    static void Store(float* to, Float value) { _mm512_storeu_ps(to, value); }

    static void LoadChannels(const void* from, std::ptrdiff_t stride, Float& alpha, Float& red, Float& green,
                             Float& blue) {
        const auto pixel = [&](int i) { return LoadStrided(from, stride, i); };
        const auto four = [&](int i) {
            const __m512 two = _mm512_insertf32x4(_mm512_castps128_ps512(pixel(i)), pixel(i + 4), 1);
            return _mm512_insertf32x4(_mm512_insertf32x4(two, pixel(i + 8), 2), pixel(i + 12), 3);
        };
        const Float p0 = four(0), p1 = four(1), p2 = four(2), p3 = four(3);
        const Float ar01 = _mm512_unpacklo_ps(p0, p1), ar23 = _mm512_unpacklo_ps(p2, p3);
        const Float gb01 = _mm512_unpackhi_ps(p0, p1), gb23 = _mm512_unpackhi_ps(p2, p3);
        alpha = _mm512_shuffle_ps(ar01, ar23, 0x44);
        red = _mm512_shuffle_ps(ar01, ar23, 0xEE);
        green = _mm512_shuffle_ps(gb01, gb23, 0x44);
        blue = _mm512_shuffle_ps(gb01, gb23, 0xEE);
    }

    static void KeepCloser(Float distance, int index, Float& best, Int& bestIndex) {
        const __mmask16 closer = _mm512_cmp_ps_mask(distance, best, _CMP_LT_OQ);
        bestIndex = _mm512_mask_set1_epi32(bestIndex, closer, index);
        best = _mm512_min_ps(distance, best);
    }
    static void KeepCloser(Float distance, Int index, Float& best, Int& bestIndex) {
        const __mmask16 closer = _mm512_cmp_ps_mask(distance, best, _CMP_LT_OQ);
        bestIndex = _mm512_mask_mov_epi32(bestIndex, closer, index);
        best = _mm512_min_ps(distance, best);
    }
    static void LookUp(const PaletteTable& palette, Int index, Float& alpha, Float& red, Float& green,
                       Float& blue) {
        alpha = _mm512_permutexvar_ps(index, Load(palette.alpha));
        red = _mm512_permutexvar_ps(index, Load(palette.red));
        green = _mm512_permutexvar_ps(index, Load(palette.green));
        blue = _mm512_permutexvar_ps(index, Load(palette.blue));
    }
    static Int ZeroInt() { return _mm512_setzero_si512(); }
    static void StoreInt(std::uint32_t* to, Int value) { _mm512_storeu_si512(to, value); }
};

} // namespace
} // namespace ImageLib::Simd
