#pragma once

#include <string>

#include "clips/VideoProbe.h"

// How frames become planar RGB for the tool and video again: FFmpeg's filters for the two ways. zimg does the
// work (FFmpeg's "zscale"), as it puts halved chroma where it belongs, to the rounding of the last bit, at
// the speed of the others.
namespace fxhost {

// The matrix that a video of this size has when it does not say: "bt709" from 720 rows or 1280 columns on,
// else "smpte170m". FFmpeg's names.
std::string UsualMatrix(unsigned width, unsigned height);

// Video of any kind to RGB of full range, alpha left as it is; what the file does not say is taken as usual.
// The pixel format is still to be chosen, by -pix_fmt.
std::string ToRgbFilter(const VideoInfo& info);

// What an output says of its colours.
struct ColourTags {
    std::string matrix, primaries, transfer;
    bool isFullRange = false; // 0..255 where video has 16..235
};

// RGB of full range to video that is tagged so.
std::string FromRgbFilter(const ColourTags& tags, unsigned width, unsigned height);

} // namespace fxhost
