#pragma once

#include <memory>
#include <optional>

#include "clips/FrameSink.h"
#include "clips/FrameSource.h"
#include "clips/NumberPattern.h"

namespace fxhost {

// Numbered pictures on disk, all of the size of number `first`; depth: theirs or the one asked for. Throws
// WrongUse when that one cannot be read.
std::unique_ptr<FrameSource> OpenPictures(const NumberPattern& pattern, long first,
                                          std::optional<unsigned> depth);

// One picture that every frame shows.
std::unique_ptr<FrameSource> RepeatPicture(Picture picture);

// Writes numbered pictures. With `resume`, files that are there and have a picture's header count as written.
// What killed writers left of the `planned` numbers is removed. Throws WrongUse when the folder or the format
// does not exist.
std::unique_ptr<FrameSink> WritePictures(const NumberPattern& pattern, bool resume,
                                         const std::set<long>& planned);

// Takes the frames and forgets them.
std::unique_ptr<FrameSink> DiscardFrames();

} // namespace fxhost
