#pragma once

#include <optional>
#include <string>
#include <vector>

#include "clips/FrameRate.h"

namespace fxhost {

// The encoder that the user asks for; empty where the output's extension decides.
struct EncoderOptions {
    std::string codec;       // FFmpeg's name of the encoder
    std::string pixelFormat; // FFmpeg's name
    std::string arguments;   // further encoder arguments, separated by blanks

    bool isAny() const { return !codec.empty() || !pixelFormat.empty() || !arguments.empty(); }
};

// Properties of the clip that the encoder has to preserve.
struct VideoContent {
    FrameRate rate;
    double start = 0;                        // time of the first frame in the output, in seconds
    bool hasAlpha = false;                   // false when every pixel is opaque
    std::string matrix, primaries, transfer; // tags of the input video in FFmpeg's names; may be empty
    bool isFullRange = false;
    std::string pixelAspect;                    // such as "4:3"; empty for square pixels
    std::string masteringDisplay, contentLight; // HDR10, as in VideoMetadata
};

// The encoder for frames of one size and depth.
struct VideoFormat {
    std::vector<std::string> arguments; // FFmpeg's arguments between input and output
    std::string partExtension;          // of files that can be joined to the output
    bool isYuv = false;                 // true when the encoder takes luma and chroma
    bool keepsAlpha = false;            // true when the encoder takes an alpha channel
};

// Chooses the encoder by the output's extension. .mp4 and .m4v: H.264, or H.265 with 10 bits for pictures of
// more than 8 bits. .mov: ProRes with 10 bits, ProRes 4444 with alpha. .mkv: FFV1, which is lossless up to 16
// bits. .webm: VP9. `options` take precedence. Throws WrongUse when the encoder does not take the pixel
// format.
VideoFormat ChooseVideoFormat(const std::string& path, const EncoderOptions& options,
                              const VideoContent& content, unsigned width, unsigned height, unsigned depth);

// Time units per second of an mp4 or mov file: the frame rate, or a multiple that also expresses the start.
long VideoTimescale(const VideoContent& content);

// The number of threads for an FFmpeg process: half of the processors, because the others render. More
// threads also take more processor time in total.
std::string CodecThreads();

// Throws WrongUse when the extension is not a supported video format; the text lists the supported ones.
void RequireVideoExtension(const std::string& path);

} // namespace fxhost
