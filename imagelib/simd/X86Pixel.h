#pragma once

#include "imagelib/simd/Kernels.h"

#include <emmintrin.h>

// Operations on a single pixel, which the three x86 vector types share: SSE2 is present on every x86-64
// processor.
namespace ImageLib::Simd {
namespace {

struct X86Pixel {
    using Pixel = __m128; // alpha, red, green, blue

    static Pixel LoadPixel(const Pixel32* from) { return _mm_loadu_ps(&from->alpha); }
    static void StorePixel(Pixel32* to, Pixel value) { _mm_storeu_ps(&to->alpha, value); }
    static Pixel SplatPixel(float value) { return _mm_set1_ps(value); }
    static float Red(Pixel pixel) { return _mm_cvtss_f32(_mm_shuffle_ps(pixel, pixel, 1)); }

    // Pixel i of an array with `stride` bytes from pixel to pixel.
    static Pixel LoadStrided(const void* from, std::ptrdiff_t stride, int i) {
        return LoadPixel(reinterpret_cast<const Pixel32*>(static_cast<const char*>(from) + stride * i));
    }

    // Finds the grid's cell of a pixel. Returns false for NaN and outside the grid.
    static bool FindCell(Pixel pixel, const CellGrid& grid, std::uint32_t& cell) {
        const __m128 scaled = _mm_mul_ps(_mm_sub_ps(pixel, _mm_set1_ps(grid.low)), _mm_set1_ps(grid.scale));
        const __m128i position = _mm_cvttps_epi32(scaled);
        const __m128i outside = _mm_and_si128(position, _mm_set1_epi32(grid.OutsideMask()));
        if (_mm_movemask_epi8(_mm_cmpeq_epi32(outside, _mm_setzero_si128())) != 0xFFFF)
            return false;
        // Multiplies and adds neighbouring channels: red alone, and green plus 2^bits times blue.
        const __m128i factors = _mm_set_epi16(0, 0, 0, 0, static_cast<short>(1 << grid.bits), 1, 1, 0);
        const __m128i sums = _mm_madd_epi16(_mm_packs_epi32(position, position), factors);
        const auto both = static_cast<std::uint64_t>(_mm_cvtsi128_si64(sums));
        cell = static_cast<std::uint32_t>(both) | static_cast<std::uint32_t>(both >> 32) << grid.bits;
        return true;
    }
};

} // namespace
} // namespace ImageLib::Simd
