#pragma once

#include <cstdint>

#include "AE_Effect.h"

namespace Adapter {

// size * scale, nearly rounded: (num * size + (den / 2 - 1)) / den with a rounding term that is never
// negative, so that 1/1 changes nothing. A meaningless scale changes nothing either.
inline std::uint32_t Scaled(std::uint32_t size, const PF_RationalScale& scale) {
    if (scale.num <= 0 || scale.den == 0)
        return size;
    const std::uint64_t half = scale.den / 2;
    const std::uint64_t product = static_cast<std::uint64_t>(scale.num) * size;
    return static_cast<std::uint32_t>((product + (half > 0 ? half - 1 : 0)) / scale.den);
}

// num / den; 1 for a meaningless scale.
inline float Ratio(const PF_RationalScale& scale) {
    if (scale.num == 0 || scale.den == 0)
        return 1.0f;
    return static_cast<float>(scale.num) / static_cast<float>(scale.den);
}

// Sizes come from the host signed; nothing below zero makes sense.
inline std::uint32_t Extent(A_long size) {
    return size > 0 ? static_cast<std::uint32_t>(size) : 0u;
}

} // namespace Adapter
