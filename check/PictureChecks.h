#pragma once

#include "pictures/Picture.h"

namespace fxhost {

// True when every pixel has alpha 0. Pixels of NaN count as visible.
bool IsTransparent(const Picture& picture);

// True when a channel of a float picture is NaN or infinite.
bool HasNonFiniteValue(const Picture& picture);

// The largest difference between two pictures when both are reduced to 8 by 6 premultiplied pixels, from 0
// to 1. Size and depth may differ. It ignores rounding, dithering and what a few pixels show.
double CoarseDifference(const Picture& first, const Picture& second);

// The largest difference between channels of the same pixel, in units of full scale; 1 when sizes differ.
double FineDifference(const Picture& first, const Picture& second);

// A smooth picture with an opaque and a transparent part, whose quarters all differ. Depth is 8, 16 or 32.
Picture MakeTestScene(unsigned width, unsigned height, unsigned depth);

// Inverts the colours of the rectangle that IsMarkUpsideDown looks for: the upper rows of the left half.
void Mark(Picture& picture);

// True when the difference between the frames of a picture and of the marked picture is in the lower rows,
// where the mark is when the frame is upside down.
bool IsMarkUpsideDown(const Picture& frame, const Picture& markedFrame);

} // namespace fxhost
