#pragma once

#include "pictures/Picture.h"

namespace fxhost {

// A picture as files keep it: any number of interleaved channels, first row on top, 0..255, 0..65535 or
// float.
struct FilePixels {
    unsigned width = 0;
    unsigned height = 0;
    unsigned depth = 8;    // 8, 16 or 32 (float)
    unsigned channels = 4; // 1 grey, 3 RGB; with an alpha channel one more
    int alpha = 3;         // index of the alpha channel, -1 when there is none
    std::vector<std::uint8_t> bytes;
};

// The host's picture for file pixels, at the depth asked for. Grey is spread over the three colours, missing
// alpha is opaque, a fourth colour is dropped. Integers are rounded, out-of-range floats clamped when an
// integer depth is asked for; nothing is multiplied by alpha.
Picture ToPicture(const FilePixels& file, unsigned depth);

// The same picture as RGBA, or as RGB without alpha, at the picture's depth.
FilePixels ToFilePixels(const Picture& picture, bool withAlpha);

} // namespace fxhost
