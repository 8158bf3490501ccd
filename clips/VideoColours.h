#pragma once

#include <string>

#include "clips/VideoProbe.h"

// FFmpeg's filters for the conversion between video and planar RGB. The zimg library does the work (FFmpeg's
// "zscale"), because it respects the siting of subsampled chroma and rounds correctly, at the speed of the
// alternatives.
namespace fxhost {

// The matrix that untagged video of this size is assumed to have: "bt709" from 720 rows or 1280 columns on,
// otherwise "smpte170m". FFmpeg's names.
std::string DefaultMatrix(unsigned width, unsigned height);

// Filter from any video to full-range RGB. Alpha is left as it is, and missing tags get their defaults. The
// caller selects the pixel format with -pix_fmt.
std::string ToRgbFilter(const VideoInfo& info);

// The colour tags of an output, in FFmpeg's names.
struct ColourTags {
    std::string matrix, primaries, transfer;
    bool isFullRange = false; // 0..255 instead of the limited range 16..235
};

// Filter from full-range RGB to video with these tags.
std::string FromRgbFilter(const ColourTags& tags, unsigned width, unsigned height);

} // namespace fxhost
