#pragma once

#include "imagelib/Surface.h"

namespace ImageLib {

// The fixed palettes of historical display hardware. Every colour is opaque, and every channel is an 8-bit
// value divided by 255.
enum HWPalette : unsigned {
    s_3bit = 1,
    s_4bit = 2,
    s_AppleII = 3,
    s_Vic20 = 4,
    s_C64 = 5,
    s_CGA4P1L = 6, // CGA four-colour mode, palette 1, low and high intensity
    s_CGA4P1H = 7,
    s_CGA4P2L = 8,
    s_CGA4P2H = 9,
    s_CGA5L = 10, // CGA mode 5
    s_CGA5H = 11,
    s_EGA = 12,
    s_MSX = 13,
};
inline constexpr unsigned s_HWPaletteCount = 13;

// Returns the palette's first colour, which is valid until the process ends, or null for a value
// outside 1..13. Thread-safe.
const Pixel32* GetPalette(HWPalette palette);

// Returns the number of the palette's colours: 4, 8 or 16, or 0 for a value outside 1..13. Thread-safe.
unsigned GetPaletteLen(HWPalette palette);

} // namespace ImageLib
