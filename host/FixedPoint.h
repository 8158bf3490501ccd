#pragma once

#include <cstdint>

namespace Adapter {

// The integer part's low 32 bits; 0 for what no integer holds.
inline std::int32_t TruncatedTo32Bits(double value) {
    constexpr double s_Limit = 9.0e18; // inside 64 bits
    if (!(value > -s_Limit && value < s_Limit))
        return 0;
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(static_cast<std::int64_t>(value)));
}

// 16.16 fixed point, rounded half away from zero.
inline std::int32_t RoundedFixed(float value) {
    return TruncatedTo32Bits(value * 65536.0 + (value < 0 ? -0.5 : 0.5));
}

} // namespace Adapter
