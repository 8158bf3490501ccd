#pragma once

#include <memory>
#include <set>

#include "clips/FrameSink.h"
#include "clips/NumberPattern.h"
#include "toolkit/PictureFile.h"

namespace fxhost {

struct PictureJob {
    NumberPattern pattern;
    std::set<long> planned; // numbers of this run; empty when they are not known
    PictureWriting writing;
    bool resume = false; // frames of earlier runs count when their record has the same digest
    bool replace = true; // false: throw WrongUse when a file would be replaced
};

// Writes numbered pictures, and prints a warning with what the first one does not keep of its input. Holds
// the lock on their numbers and records their digests. Temporary files that killed runs left for the planned
// numbers are removed. Throws WrongUse when the folder does not exist or no picture format has this
// extension, EffectFailure when another run is writing the same frames.
std::unique_ptr<FrameSink> WritePictures(const PictureJob& job);

// Discards every frame.
std::unique_ptr<FrameSink> DiscardFrames();

} // namespace fxhost
