#pragma once

#include <optional>
#include <string>

namespace fxhost {

// What a picture file declares about itself before its pixels.
struct PictureHeader {
    unsigned width = 0, height = 0; // pixels
    bool hasAlpha = false;
};

// Nothing when the file does not exist or is not a picture.
std::optional<PictureHeader> ReadPictureHeader(const std::string& path);

} // namespace fxhost
