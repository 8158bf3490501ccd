#pragma once

#include <memory>
#include <set>

#include "clips/FrameSink.h"
#include "clips/NumberPattern.h"

namespace fxhost {

// Writes numbered pictures. With `resume`, files that exist and have a valid header count as written.
// Temporary files that killed runs left for the `planned` numbers are removed. Throws WrongUse when the
// folder does not exist or no picture format has this extension.
std::unique_ptr<FrameSink> WritePictures(const NumberPattern& pattern, bool resume,
                                         const std::set<long>& planned);

// Discards every frame.
std::unique_ptr<FrameSink> DiscardFrames();

} // namespace fxhost
