#pragma once

#include <memory>
#include <string>

#include "clips/FrameSink.h"
#include "clips/VideoFormat.h"

namespace fxhost {

// Sound that is copied to a video.
struct SoundTrack {
    std::string path;   // empty for no sound
    double start = 0;   // seconds from the beginning of the file
    double seconds = 0; // 0 for everything up to the end
};

struct VideoJob {
    std::string path;
    EncoderOptions options;
    VideoContent content;
    SoundTrack sound;
    bool resume = false;
    std::string identity;   // everything that decides what the frames look like
    std::size_t frames = 0; // expected length of the video
};

// Frames in each part of a video that is being written.
constexpr std::size_t PartFrames = 48;

// Writes a video with the ffmpeg program. The video is encoded in parts, which stay in the folder
// ".NAME.parts" beside the output until the last one is complete; then they are joined without encoding them
// again. A part gets its name when it is complete, so a run that was killed can continue with the first
// missing part, and the result is the same file as that of a single run. Throws WrongUse when the folder does
// not exist, the extension is not known, or the parts belong to another clip.
std::unique_ptr<FrameSink> WriteVideo(const VideoJob& job);

} // namespace fxhost
