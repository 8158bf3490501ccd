#pragma once

#include <memory>
#include <optional>

#include "clips/ClipOptions.h"
#include "clips/FramePlan.h"
#include "clips/FrameRate.h"
#include "clips/FrameSource.h"
#include "clips/VideoProbe.h"

namespace fxhost {

// The opened input of a clip, and what it decides about the clip.
struct ClipInput {
    std::unique_ptr<FrameSource> source;
    FramePlan plan; // every frame that this run is asked for
    FrameRate rate;
    long zeroFrame = 1;             // number of the frame at time 0
    std::optional<VideoInfo> video; // set when the input is a video
    // Seconds from the beginning of the input file to the frame with number 1. Its sound is in sync when it
    // keeps this distance.
    double firstFrameTime = 0;
};

// Opens numbered pictures, a video, raw frames, a single picture or an empty layer, and lists the frames.
// Throws WrongUse that names the file or option.
ClipInput OpenClipInput(const ClipOptions& options, const ClipRequest& request);

} // namespace fxhost
