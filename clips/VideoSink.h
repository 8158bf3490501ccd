#pragma once

#include <memory>

#include "clips/FrameSink.h"
#include "clips/VideoFormat.h"

namespace fxhost {

// Sound for a video that is written.
struct SoundTrack {
    std::string path;   // empty: none
    double start = 0;   // seconds into the file
    double seconds = 0; // 0: to its end
};

struct VideoJob {
    std::string path;
    VideoWishes wishes;
    VideoContent content;
    SoundTrack sound;
    bool resume = false;
    // Everything that decides what the frames look like. A later run may only go on when it is the same.
    std::string plan;
    std::size_t frames = 0; // that are expected
};

// Writes a video through the ffmpeg program. It is encoded in parts of PartFrames frames, which lie in the
// folder ".NAME.parts" beside the output until the last one is whole; then they are joined, without
// encoding again, to the file of that name. Each part gets its name when it is whole, so a run that was
// killed can go on with the first missing part, and the result is the same as that of one run.
// Throws WrongUse when the folder does not exist, the ending is not known, or the parts are another clip's.
constexpr std::size_t PartFrames = 48;
std::unique_ptr<FrameSink> WriteVideo(const VideoJob& job);

// The folder for the parts of an output.
std::string PartsFolder(const std::string& path);

} // namespace fxhost
