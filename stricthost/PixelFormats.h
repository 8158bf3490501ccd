#pragma once

#include <cstdint>

namespace stricthost {

// Format codes that After Effects reports; A, R, G, B in memory.
constexpr std::uint32_t FormatArgb8 = 0x62677261;
constexpr std::uint32_t FormatArgb16 = 0x36316561; // 0..32768
constexpr std::uint32_t FormatArgb32 = 0x32336561; // float

// Bits per channel (8, 16 or 32) of a format code of either host; 0 for one that is unknown.
unsigned FormatBits(std::uint32_t format);
// The code of After Effects for bits per channel; 0 for other bits than 8, 16 and 32.
std::uint32_t FormatOfBits(unsigned bits);

} // namespace stricthost
