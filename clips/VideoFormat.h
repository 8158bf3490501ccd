#pragma once

#include <optional>
#include <string>
#include <vector>

#include "clips/FrameList.h"

namespace fxhost {

// What the user says about a video to write; empty where the name's ending decides.
struct VideoWishes {
    std::string codec;       // an FFmpeg encoder's name
    std::string pixelFormat; // FFmpeg's name
    std::string options;     // further encoder arguments, separated by blanks
};

// What the clip brings.
struct VideoContent {
    FrameRate rate;
    bool hasAlpha = false;                   // whether alpha is worth keeping
    std::string matrix, primaries, transfer; // the input video's, in FFmpeg's names; may be empty
};

// The encoder arguments for frames of one size and depth.
struct VideoFormat {
    std::vector<std::string> arguments; // codec, pixel format, colours; all between input and output
    std::string partEnding;             // of files that can be joined to the output
    bool isYuv = false;                 // whether the encoder takes luma and chroma
    bool keepsAlpha = false;            // whether frames are to come with alpha
};

// Chosen by the output's ending: .mp4 and .m4v H.264, or H.265 with 10 bits for deep pictures; .mov ProRes
// with 10 bits, with alpha ProRes 4444; .mkv FFV1, which loses nothing up to 16 bits; .webm VP9.
VideoFormat ChooseVideoFormat(const std::string& path, const VideoWishes& wishes, const VideoContent& content,
                              unsigned width, unsigned height, unsigned depth);

// How many threads FFmpeg takes to read or to write: half as many as there are processors, as the others
// render. More of them also cost more in all.
std::string CodecThreads();

// Throws WrongUse when videos with this ending are not written; the text lists those that are.
void RequireVideoEnding(const std::string& path);

} // namespace fxhost
