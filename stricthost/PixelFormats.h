#pragma once

#include <cstdint>

#include "sdk/PixelFormats.h"

namespace stricthost {

// Format codes that After Effects reports; A, R, G, B in memory.
constexpr std::uint32_t FormatArgb8 = PixelFormats::Argb8;
constexpr std::uint32_t FormatArgb16 = PixelFormats::AfterEffectsArgb16;
constexpr std::uint32_t FormatArgb32 = PixelFormats::AfterEffectsArgb32;

// Whether pixels of this format are B, G, R, A in memory. All other known formats are A, R, G, B.
bool IsBgra(std::uint32_t format);
// Bits per channel (8, 16 or 32) of a format code of either host; 0 for one that is unknown.
unsigned FormatBits(std::uint32_t format);
// The code of After Effects for bits per channel; 0 for other bits than 8, 16 and 32.
std::uint32_t FormatOfBits(unsigned bits);

} // namespace stricthost
