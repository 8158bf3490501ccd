#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>

#include "sdk/HostApi.h"

// Sizes, scales and rectangles.
namespace Adapter {

// Pixels.
struct Size {
    std::uint32_t width;
    std::uint32_t height;
    bool operator==(const Size&) const = default;
};

// A host's size as an unsigned number; negative sizes count as 0.
inline std::uint32_t Extent(A_long size) {
    return size > 0 ? static_cast<std::uint32_t>(size) : 0u;
}

// size * scale, almost rounded: (num * size + (den / 2 - 1)) / den. The rounding term is never negative, so a
// scale of 1/1 changes nothing. A scale that is not positive changes nothing either.
inline std::uint32_t Scaled(std::uint32_t size, const PF_RationalScale& scale) {
    if (scale.num <= 0 || scale.den == 0)
        return size;
    const std::uint64_t half = scale.den / 2;
    const std::uint64_t product = static_cast<std::uint64_t>(scale.num) * size;
    return static_cast<std::uint32_t>((product + (half > 0 ? half - 1 : 0)) / scale.den);
}

// num / den, or 1 when one of them is 0.
inline float Ratio(const PF_RationalScale& scale) {
    if (scale.num == 0 || scale.den == 0)
        return 1.0f;
    return static_cast<float>(scale.num) / static_cast<float>(scale.den);
}

// The closest number of 32 bits.
inline A_long Clamped(std::int64_t value) {
    constexpr std::int64_t least = std::numeric_limits<A_long>::min(),
                           most = std::numeric_limits<A_long>::max();
    return static_cast<A_long>(std::clamp(value, least, most));
}

// The extent of a rectangle, 0 by 0 or more. Its edges may be as far apart as 32 bits allow.
inline Size SizeOf(const PF_LRect& rect) {
    const auto length = [](std::int64_t from, std::int64_t to) {
        return static_cast<std::uint32_t>(std::max<std::int64_t>(to - from, 0));
    };
    return {length(rect.left, rect.right), length(rect.top, rect.bottom)};
}

inline bool IsEmpty(const PF_LRect& rect) {
    return rect.left >= rect.right || rect.top >= rect.bottom;
}

// Grows dst to the union of both rectangles. An empty dst becomes src; an empty src changes nothing.
inline void UnionLRect(const PF_LRect* src, PF_LRect* dst) {
    if (IsEmpty(*src))
        return;
    if (IsEmpty(*dst)) {
        *dst = *src;
        return;
    }
    dst->left = src->left < dst->left ? src->left : dst->left;
    dst->top = src->top < dst->top ? src->top : dst->top;
    dst->right = src->right > dst->right ? src->right : dst->right;
    dst->bottom = src->bottom > dst->bottom ? src->bottom : dst->bottom;
}

// True when inner is inside outer. The left and top edges may coincide; the right and bottom edges may not.
inline bool LiesStrictlyInside(const PF_LRect& inner, const PF_LRect& outer) {
    return inner.left >= outer.left && inner.top >= outer.top && inner.right < outer.right &&
           inner.bottom < outer.bottom;
}

} // namespace Adapter
