#pragma once

#include <memory>
#include <string>
#include <vector>

namespace fxhost {

// What a picture file declares besides its pixels. The output of an effect keeps it where its format can.
struct PictureOrigin {
    struct File; // PictureAttributes.h
    std::shared_ptr<const File> file;
    bool hasAlpha = true;
    bool isGrey = false;
    bool isDataWindow = false;     // true when the picture is the data window, with overscan
    bool isOtherLayout = false;    // true when the colours are not those of the whole file: parts, layers
    std::vector<std::string> lost; // what the picture does not contain, as texts for people
};

// The names of all attributes of the file that describe the picture and not its encoding. Groups such as Exif
// count as one.
std::vector<std::string> AttributeNames(const PictureOrigin& origin);

// The frame rate that the file states, such as "25/1"; empty when there is none.
std::string FrameRateText(const PictureOrigin& origin);

} // namespace fxhost
