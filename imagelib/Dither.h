#pragma once

#include "imagelib/DitherKernels.h"
#include "imagelib/Quantizers.h"

namespace ImageLib::Dither {

// Replaces each pixel by its colour of the set and adds the error of all four channels to later pixels,
// weighted by the kernel (see DitherKernels.h). Values are not clamped. serpentine: odd rows run from right
// to left, with a mirrored kernel. A kernel without a positive entry in row 0 leaves the surface unchanged.
// Throws std::bad_alloc.
void ErrorDiffusion(Surface<Pixel32>& surface, const Surface<Pixel32>& kernel, const ColourSet& colours,
                    bool serpentine);

// Replaces each pixel by the colour of the set for the pixel plus strength * kernel entry, in all four
// channels. The kernel repeats over the picture by bit masks, so its width and height are powers of two.
// strength: any number. May use several threads. Throws std::bad_alloc.
void Ordered(Surface<Pixel32>& surface, const Surface<Pixel32>& kernel, const ColourSet& colours,
             float strength);

template <class Quantizer>
void ErrorDiffusion(Surface<Pixel32>& surface, const Surface<Pixel32>& kernel, const Quantizer& quantizer,
                    bool serpentine) {
    ErrorDiffusion(surface, kernel, quantizer.Colours(), serpentine);
}

template <class Quantizer>
void Ordered(Surface<Pixel32>& surface, const Surface<Pixel32>& kernel, const Quantizer& quantizer,
             float strength) {
    Ordered(surface, kernel, quantizer.Colours(), strength);
}

} // namespace ImageLib::Dither
