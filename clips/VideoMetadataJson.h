#pragma once

#include <nlohmann/json_fwd.hpp>

#include "clips/VideoMetadata.h"

namespace fxhost {

// Reads the JSON of "ffprobe -show_format -show_streams -show_chapters"; `video` is the stream of the frames.
VideoMetadata MetadataOf(const nlohmann::json& probe, const nlohmann::json& video);

// Adds the HDR10 data from the JSON of "ffprobe -show_frames".
void AddHdr(const nlohmann::json& frames, VideoMetadata& metadata);

} // namespace fxhost
