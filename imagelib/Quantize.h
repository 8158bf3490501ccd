#pragma once

#include "imagelib/Surface.h"

namespace ImageLib {

// A way of dithering. Values that are not listed change nothing.
enum class DitheringMode : int {
    None = 0, // nearest colour
    FloydSteinberg = 2,
    JarvisJudice = 3,
    Stucki = 4,
    Atkinson = 5,
    Burkes = 6,
    Sierra = 7,
    Sierra2 = 8, // two rows
    Sierra3 = 9, // the small one, "Sierra Lite"
    StevensonArce = 10,
    Bayer2x2 = 12,
    Bayer4x4 = 13,
    Bayer8x8 = 14,
};

// Reduces the surface in place to few colours.
// selector: 1 black and white by threshold; 2..7 an adaptive palette of 8, 16, 32, 64, 128 or 256 colours;
//   9..21 the fixed palette selector - 8. Any other value changes nothing.
// threshold: the bitmap's threshold of red, and the strength of an ordered dither (the bitmap uses it as
// both). serpentine: error diffusion runs odd rows right to left. One call at a time in the process. Throws
// std::bad_alloc, which may leave the surface half done.
void Quantize(Surface<Pixel32>& surface, unsigned selector, DitheringMode mode, float threshold,
              bool serpentine);

} // namespace ImageLib
