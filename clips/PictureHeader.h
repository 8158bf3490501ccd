#pragma once

#include <optional>
#include <string>

namespace fxhost {

// What the first bytes of a picture file tell.
struct PictureHeader {
    unsigned width = 0, height = 0; // pixels
    bool hasAlpha = false;
};

// Nothing when there is no such file or it is no picture.
std::optional<PictureHeader> ReadPictureHeader(const std::string& path);

} // namespace fxhost
