#pragma once

#include <memory>
#include <optional>

#include "clips/FrameSource.h"
#include "clips/NumberPattern.h"
#include "toolkit/Alpha.h"

namespace fxhost {

// Reads numbered pictures. All have the size of number `first`, and its depth unless `depth` is given (bits
// per channel). Throws WrongUse when that picture cannot be read.
std::unique_ptr<FrameSource> OpenPictures(const NumberPattern& pattern, long first,
                                          std::optional<unsigned> depth, AlphaMode alpha);

// Shows the same picture in every frame. `file`: where it comes from, or empty.
std::unique_ptr<FrameSource> RepeatPicture(Picture picture, const std::string& file);

} // namespace fxhost
