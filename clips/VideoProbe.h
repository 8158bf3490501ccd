#pragma once

#include <string>

#include "clips/FrameList.h"

namespace fxhost {

// What ffprobe tells about a video file.
struct VideoInfo {
    unsigned width = 0, height = 0; // of the frames as they come out, turned if the file says so
    unsigned bits = 8;              // of the deepest channel
    bool hasAlpha = false;
    bool isYuv = false; // luma and two chroma channels
    FrameRate rate;     // the average one
    long frames = 0;    // packets found in the file
    long promised = 0;  // what the header promises, 0 when it does not
    bool hasSound = false;
    std::string codec;                       // "h264"
    std::string matrix, primaries, transfer; // FFmpeg's names: "bt709", ...; empty when the file does not say
};

// Throws WrongUse naming the file when it holds no video, EffectFailure when ffprobe cannot be run.
VideoInfo ProbeVideo(const std::string& path);

// Whether a path without number pattern names a video, by its ending.
bool IsVideoName(const std::string& path);

// A path that FFmpeg does not take for an option or an address.
std::string FileArgument(const std::string& path);

} // namespace fxhost
