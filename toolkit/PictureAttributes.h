#pragma once

#include <OpenImageIO/imageio.h>
#include <string>
#include <vector>

#include "toolkit/PictureOrigin.h"

namespace fxhost {

// The file of an origin, for the rooms that use the image library.
struct PictureOrigin::File {
    OIIO::ImageSpec spec;
    std::string format; // OpenImageIO's name
};

// Copies the attributes of the origin that describe the picture and not its encoding.
void CopyAttributes(const PictureOrigin& origin, OIIO::ImageSpec& spec);

// The names of the attributes that CopyAttributes has copied, but a written file does not have. Groups such
// as Exif count as one.
std::vector<std::string> LostAttributes(const PictureOrigin& origin, const OIIO::ImageSpec& written);

} // namespace fxhost
