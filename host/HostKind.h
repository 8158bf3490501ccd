#pragma once

#include "AE_Effect.h"

namespace Adapter {

constexpr A_long PremiereId = 0x50724D72; // 'PrMr'; every other host counts as After Effects

inline bool IsPremiere(const PF_InData& in) {
    return in.appl_id == PremiereId;
}

// These versions render again only on request.
inline bool NeedsForcedRerender(const PF_InData& in) {
    return in.version.major < 13 || in.version.minor < 9;
}

// False for After Effects with version 13.0 or 13.1, which sizes frames without the frame lock.
inline bool TakesLockForSizing(const PF_InData& in) {
    return IsPremiere(in) || in.version.major != 13 || in.version.minor > 1;
}

} // namespace Adapter
