#pragma once

#include "imagelib/simd/X86Pixel.h"

#include <immintrin.h>

// Eight lanes of AVX2. The operations are described in README.md.
namespace ImageLib::Simd {
namespace {

struct Vec8 : X86Pixel {
    static constexpr unsigned Lanes = 8;
    using Float = __m256;
    using Int = __m256i;

    static Float Splat(float value) { return _mm256_set1_ps(value); }
    static Float Load(const float* from) { return _mm256_loadu_ps(from); }
    static void Store(float* to, Float value) { _mm256_storeu_ps(to, value); }

    template <int Channel>
    static Float Broadcast(Pixel pixel) {
        return _mm256_permutevar8x32_ps(_mm256_castps128_ps256(pixel), _mm256_set1_epi32(Channel));
    }

    static void LoadChannels(const void* from, std::ptrdiff_t stride, Float& alpha, Float& red, Float& green,
                             Float& blue) {
        const auto two = [&](int i) {
            return _mm256_insertf128_ps(_mm256_castps128_ps256(LoadStrided(from, stride, i)),
                                        LoadStrided(from, stride, i + 4), 1);
        };
        const Float p04 = two(0), p15 = two(1), p26 = two(2), p37 = two(3);
        const Float ar01 = _mm256_unpacklo_ps(p04, p15), ar23 = _mm256_unpacklo_ps(p26, p37);
        const Float gb01 = _mm256_unpackhi_ps(p04, p15), gb23 = _mm256_unpackhi_ps(p26, p37);
        alpha = _mm256_shuffle_ps(ar01, ar23, 0x44);
        red = _mm256_shuffle_ps(ar01, ar23, 0xEE);
        green = _mm256_shuffle_ps(gb01, gb23, 0x44);
        blue = _mm256_shuffle_ps(gb01, gb23, 0xEE);
    }

    static void KeepCloser(Float distance, int index, Float& best, Int& bestIndex) {
        const __m256 closer = _mm256_cmp_ps(distance, best, _CMP_LT_OQ);
        bestIndex = _mm256_blendv_epi8(bestIndex, _mm256_set1_epi32(index), _mm256_castps_si256(closer));
        best = _mm256_min_ps(distance, best);
    }
    static void KeepCloser(Float distance, Int index, Float& best, Int& bestIndex) {
        const __m256 closer = _mm256_cmp_ps(distance, best, _CMP_LT_OQ);
        bestIndex = _mm256_blendv_epi8(bestIndex, index, _mm256_castps_si256(closer));
        best = _mm256_min_ps(distance, best);
    }
    static void LookUp(const PaletteTable& palette, Int index, Float& alpha, Float& red, Float& green,
                       Float& blue) {
        const __m256 upper = _mm256_castsi256_ps(_mm256_cmpgt_epi32(index, _mm256_set1_epi32(7)));
        const auto channel = [&](const float* table) {
            return _mm256_blendv_ps(_mm256_permutevar8x32_ps(Load(table), index),
                                    _mm256_permutevar8x32_ps(Load(table + 8), index), upper);
        };
        alpha = channel(palette.alpha);
        red = channel(palette.red);
        green = channel(palette.green);
        blue = channel(palette.blue);
    }
    static Int ZeroInt() { return _mm256_setzero_si256(); }
    static void StoreInt(std::uint32_t* to, Int value) {
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(to), value);
    }

    static Float Min(Float first, Float second) { return _mm256_min_ps(first, second); }
    static Float Smallest(Float value) {
        value = _mm256_min_ps(value, _mm256_permute2f128_ps(value, value, 1));
        value = _mm256_min_ps(value, _mm256_permute_ps(value, 0x4E));
        return _mm256_min_ps(value, _mm256_permute_ps(value, 0xB1));
    }
    static unsigned EqualLanes(Float left, Float right) {
        return static_cast<unsigned>(_mm256_movemask_ps(_mm256_cmp_ps(left, right, _CMP_EQ_OQ)));
    }

    static Int Truncate(Float value) { return _mm256_cvttps_epi32(value); }
    static Int SplatInt(int value) { return _mm256_set1_epi32(value); }
    static Int Or(Int left, Int right) { return _mm256_or_si256(left, right); }
    static Int ShiftLeft(Int value, unsigned bits) {
        return _mm256_sll_epi32(value, _mm_cvtsi32_si128(bits));
    }
    static bool AnyBits(Int value, Int mask) { return !_mm256_testz_si256(value, mask); }
};

} // namespace
} // namespace ImageLib::Simd
