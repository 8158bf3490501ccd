#pragma once

#include "AE_Effect.h"

namespace Adapter {

inline bool IsEmpty(const PF_LRect& rect) {
    return rect.left >= rect.right || rect.top >= rect.bottom;
}

// Grows dst to the union of both; an empty dst becomes src, an empty src changes nothing.
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

// Inside on every side; sides may touch on the left and top only.
inline bool LiesStrictlyInside(const PF_LRect& inner, const PF_LRect& outer) {
    return inner.left >= outer.left && inner.top >= outer.top && inner.right < outer.right &&
           inner.bottom < outer.bottom;
}

} // namespace Adapter
