#pragma once

#include <map>
#include <memory>
#include <optional>

#include "clips/FrameSource.h"
#include "clips/NumberPattern.h"
#include "toolkit/PictureFile.h"

namespace fxhost {

// The files that frames are read from.
struct PictureNumbers {
    long model = 1; // a picture that exists; all have its size
    // The numbers of the files for frames whose own file does not exist; nothing for a black picture.
    std::map<long, std::optional<long>> substitutes;
};

// Reads numbered pictures. All have the size of the model, and its depth unless one is given. Throws WrongUse
// when that picture cannot be read.
std::unique_ptr<FrameSource> OpenPictures(const NumberPattern& pattern, const PictureNumbers& numbers,
                                          const PictureReading& reading);

// Shows the same picture in every frame. `file`: where it comes from, or empty.
std::unique_ptr<FrameSource> RepeatPicture(Picture picture, const std::string& file);

} // namespace fxhost
