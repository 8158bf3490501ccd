#pragma once

#include "imagelib/DitherKernels.h"
#include "imagelib/Quantizers.h"

namespace ImageLib::Dither {

// Replaces each pixel by its colour of the set and spreads the error of all four channels over the pixels to
// come, by the kernel's weights (see DitherKernels.h). Values are not clamped on the way. serpentine: odd
// rows run right to left, mirrored. A kernel without a positive entry in row 0 changes nothing. Throws
// std::bad_alloc.
void ErrorDiffusion(Surface<Pixel32>& surface, const Surface<Pixel32>& kernel, const ColourSet& colours,
                    bool serpentine);

// Replaces each pixel by the colour of the pixel plus strength * kernel entry, in all four channels; the
// kernel repeats by masking, so its sizes are powers of two. May use several threads. Throws std::bad_alloc.
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
