#pragma once

#include <array>

#include "pictures/Picture.h"

namespace fxhost {

// A rectangle of pixels, half open: `right` and `bottom` are the first column and row outside it.
struct PixelBox {
    unsigned left, top, right, bottom;
};

// Mean of the pixels of a box, which must not be empty: alpha, red, green, blue in the range of the picture's
// depth. Colours are weighted by alpha, since alpha is straight; a fully transparent box gives their
// unweighted mean.
std::array<double, 4> BoxMean(const Picture& picture, const PixelBox& box);

// The picture at a lower resolution, as a host passes it for previews: each pixel is the mean of a box of
// across x down pixels (fewer at the right and lower edge). Integer depths round to nearest; extents round
// up.
Picture Downsampled(const Picture& picture, unsigned across, unsigned down);

} // namespace fxhost
