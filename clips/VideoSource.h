#pragma once

#include <memory>
#include <optional>

#include "clips/FrameSource.h"
#include "clips/VideoProbe.h"

namespace fxhost {

// The frames of a video file through the ffmpeg program; the first one has number 1. 8-bit video comes at
// depth 8, deeper video at depth 16, unless a depth is asked for. Colours are turned into RGB by the matrix
// that the file names, or else the one customary for its size. `last`: the frame that must still come, 0 when
// the clip may end where the file ends.
std::unique_ptr<FrameSource> OpenVideo(const std::string& path, const VideoInfo& info,
                                       std::optional<unsigned> depth, long last);

} // namespace fxhost
