#pragma once

#include <memory>
#include <string>
#include <vector>

#include "clips/FrameSink.h"
#include "clips/VideoFormat.h"
#include "clips/VideoMetadata.h"
#include "toolkit/Alpha.h"

namespace fxhost {

// Sound and subtitles that are copied to a video.
struct SoundTrack {
    std::string path;   // empty for neither
    double start = 0;   // seconds from the beginning of the file
    double seconds = 0; // 0 for everything up to the end
    bool hasSound = true;
    std::vector<std::string> subtitles; // codecs, in the order of the streams
};

// The video whose metadata the output keeps where it can.
struct MetadataSource {
    std::string path; // empty for none
    VideoMetadata metadata;
    bool keepsChapters = true; // false when the output has other times
};

struct VideoJob {
    std::string path;
    EncoderOptions options;
    AlphaMode alpha = AlphaMode::Auto; // how the video stores colours; Auto is straight
    VideoContent content;
    unsigned width = 0, height = 0, depth = 8; // of the input; the effect may change the size
    SoundTrack sound;
    MetadataSource source;
    std::string identity;      // everything besides the frames that decides what the parts look like
    std::string soundIdentity; // the same for the sound
    bool resume = false;       // parts of earlier runs count when their frames have the same digests
    bool replace = true;       // false: throw WrongUse when the video would be replaced
};

// Frames in each part of a video that is being written.
constexpr std::size_t PartFrames = 48;

// Writes a video with the ffmpeg program. The video is encoded in parts, which stay in the folder
// ".NAME.parts" beside the output until the last one is complete; then they are joined without encoding them
// again. A part gets its name when it is complete, so a run that was killed can continue with the first
// missing part, and the result is the same file as that of a single run. A part with a failed frame is
// dropped, and then the video is not written. Throws WrongUse when the folder does not exist or the extension
// is not known, EffectFailure when another run is writing the same video.
std::unique_ptr<FrameSink> WriteVideo(const VideoJob& job);

} // namespace fxhost
