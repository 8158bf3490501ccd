#pragma once

#include "imagelib/Surface.h"

namespace ImageLib {

// The ways of dithering. A value that is not listed leaves the surface unchanged.
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

// Reduces the surface in place to few colours. One call at a time in the process; it may use threads of its
// own (see Settings.h). Throws std::bad_alloc, after which some pixels may be reduced and others not.
//
// selector: 1 selects black and white by a threshold; 2..7 select an adaptive palette of 8, 16, 32, 64, 128
//     or 256 colours; 9..21 select the fixed palette with the HWPalette value selector - 8. Any other value
//     leaves the surface unchanged.
//
// threshold: any number. Black and white compare red with it; ordered dithering takes it as its strength.
//
// serpentine: error diffusion processes odd rows from right to left.
void Quantize(Surface<Pixel32>& surface, unsigned selector, DitheringMode mode, float threshold,
              bool serpentine);

} // namespace ImageLib
