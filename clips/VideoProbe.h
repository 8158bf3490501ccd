#pragma once

#include <string>
#include <vector>

#include "clips/FrameRate.h"
#include "clips/VideoMetadata.h"

namespace fxhost {

// What ffprobe reports about a video file.
struct VideoInfo {
    unsigned width = 0, height = 0; // of the decoded frames, after a rotation that the file asks for
    unsigned bits = 8;              // of the deepest channel
    bool hasAlpha = false;
    bool isYuv = false;        // luma and two chroma channels
    FrameRate rate;            // constant rate of the frames, or one for resampling
    bool isVariable = false;   // true when the frames have no constant rate
    double start = 0;          // seconds from the beginning of the file to its first frame
    std::vector<double> times; // of the frames in seconds, ascending; empty when the file does not give them
    long packets = 0;          // video packets in the file, usually one a frame
    long declaredFrames = 0;   // number of frames according to the header; 0 when it states none
    bool hasSound = false;
    std::string codec;  // FFmpeg's name, for example "h264"
    std::string matrix; // FFmpeg's name, for example "bt709"; empty when not tagged
    VideoMetadata metadata;
    bool isDeinterlaced = false; // true when each pair of fields becomes one frame
};

// Throws WrongUse that names the file when it has no video, EffectFailure when ffprobe cannot be run.
VideoInfo ProbeVideo(const std::string& path);

// The part of it that needs no look at the packets.
VideoMetadata ProbeMetadata(const std::string& path);

// Throws WrongUse that names the option when the file has no sound.
void RequireSound(const std::string& option, const std::string& path);

// True for a file name with a video's extension.
bool IsVideoName(const std::string& path);

// A path in a form that FFmpeg takes neither for an option nor for an address.
std::string FileArgument(const std::string& path);

} // namespace fxhost
