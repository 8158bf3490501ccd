#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "clips/FrameSource.h"
#include "clips/VideoProbe.h"
#include "toolkit/Alpha.h"

namespace fxhost {

// Decodes a video file with the ffmpeg program. The first frame has number 1. Video of 8 bits is read at
// depth 8, other video at depth 16, unless `depth` is given. Colours are converted to RGB with the matrix
// that the file names, or the default of its size. `required`: last frame that must exist; 0 when the clip
// may end where the file ends. `frames`: for each frame of the
// clip the number of the frame in the file, ascending; empty when they are the same. `alpha`: how the video
// stores colours; Auto is straight. With `mayEndEarly`, a damaged video ends with a warning after its last
// readable frame instead of an error.
std::unique_ptr<FrameSource> OpenVideo(const std::string& path, const VideoInfo& info,
                                       std::optional<unsigned> depth, long required,
                                       const std::vector<long>& frames, AlphaMode alpha,
                                       bool mayEndEarly = false);

} // namespace fxhost
