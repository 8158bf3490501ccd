#pragma once

#include <map>
#include <vector>

#include "clips/ClipOptions.h"
#include "clips/NumberPattern.h"
#include "clips/PictureSource.h"

namespace fxhost {

// Finds the numbers of a clip for which there is no picture, and prints one warning with them. Skipped
// numbers are removed from `numbers`, which are ascending like `onDisk`. Throws WrongUse for
// MissingFrames::Error, and when no frame is left.
PictureNumbers ApplyMissing(MissingFrames mode, const NumberPattern& pattern, const std::vector<long>& onDisk,
                            std::vector<long>& numbers);

} // namespace fxhost
