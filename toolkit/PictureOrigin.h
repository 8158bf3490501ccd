#pragma once

#include <OpenImageIO/imageio.h>
#include <string>
#include <vector>

namespace fxhost {

// What a picture file declares besides its pixels. The output of an effect keeps it where its format can.
struct PictureOrigin {
    OIIO::ImageSpec spec; // of the file
    std::string format;   // OpenImageIO's name
    bool hasAlpha = true;
    bool isGrey = false;
    bool isDataWindow = false;     // true when the picture is the data window, with overscan
    bool isOtherLayout = false;    // true when the colours are not those of the whole file: parts, layers
    std::vector<std::string> lost; // what the picture does not contain, as texts for people
};

// Copies the attributes of the origin that describe the picture and not its encoding.
void CopyAttributes(const PictureOrigin& origin, OIIO::ImageSpec& spec);

// The names of the attributes that CopyAttributes has copied, but a written file does not have. Groups such
// as Exif count as one.
std::vector<std::string> LostAttributes(const PictureOrigin& origin, const OIIO::ImageSpec& written);

// The names of all attributes that CopyAttributes copies, in the same form.
std::vector<std::string> AttributeNames(const PictureOrigin& origin);

} // namespace fxhost
