#pragma once

#include "pictures/Picture.h"

namespace fxhost {

// Pixels in the layout of picture files: any number of interleaved channels, first row on top, ranges 0..255,
// 0..65535 or float.
struct FilePixels {
    unsigned width = 0;
    unsigned height = 0;
    unsigned depth = 8;    // 8, 16 or 32 (float)
    unsigned channels = 4; // 1 grey, 3 RGB; with an alpha channel one more
    int alpha = 3;         // index of the alpha channel, -1 when there is none
    std::vector<std::uint8_t> bytes;
};

// Converts file pixels to the host's layout at `depth` bits per channel. Grey is copied to all three colours,
// missing alpha becomes opaque, and channels after the third colour are dropped. Integers are rounded to
// nearest; floats are clamped when `depth` is an integer depth. Alpha stays straight.
Picture ToPicture(const FilePixels& file, unsigned depth);

// Converts back at `depth` 8, 16 or 32. `channels`: 1 for grey (the red channel), 2 for grey and alpha, 3 for
// RGB, 4 for RGBA. From 32 to 16 bits, nothing is rounded twice.
FilePixels ToFilePixels(const Picture& picture, unsigned channels, unsigned depth);

// The picture at another depth.
Picture AtDepth(Picture picture, unsigned depth);

// True when every pixel has full alpha; when the three colours of every pixel are equal.
bool IsOpaque(const Picture& picture);
bool IsGrey(const Picture& picture);

// Converts back to RGBA, or to RGB without alpha, at the depth of the picture.
FilePixels ToFilePixels(const Picture& picture, bool withAlpha);

} // namespace fxhost
