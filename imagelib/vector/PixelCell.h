#pragma once

#include "imagelib/vector/Kernels.h"

#include <emmintrin.h>

// The grid's cell of a single pixel, for the x86 vector types.
namespace ImageLib::Vector {
namespace {

// False outside the grid and for NaN.
inline bool FindPixelCell(__m128 pixel, const CellGrid& grid, std::uint32_t& cell) {
    const __m128 scaled = _mm_mul_ps(_mm_sub_ps(pixel, _mm_set1_ps(grid.low)), _mm_set1_ps(grid.scale));
    const __m128i position = _mm_cvttps_epi32(scaled);
    const __m128i beyond = _mm_and_si128(position, _mm_set1_epi32(~((1 << grid.bits) - 1)));
    if (_mm_movemask_epi8(_mm_cmpeq_epi32(beyond, _mm_setzero_si128())) != 0xFFFF)
        return false;
    // Products of neighbouring channels: red alone, and green with blue above it.
    const __m128i factors = _mm_set_epi16(0, 0, 0, 0, static_cast<short>(1 << grid.bits), 1, 1, 0);
    const __m128i sums = _mm_madd_epi16(_mm_packs_epi32(position, position), factors);
    const auto both = static_cast<std::uint64_t>(_mm_cvtsi128_si64(sums));
    cell = static_cast<std::uint32_t>(both) | static_cast<std::uint32_t>(both >> 32) << grid.bits;
    return true;
}

} // namespace
} // namespace ImageLib::Vector
