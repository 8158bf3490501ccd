#pragma once

#include <optional>
#include <string>

namespace fxhost {

// What the command line says about a clip, as it stands there.
struct ClipOptions {
    std::string frames, fps, shard, keys, raw;
    std::string codec, pixelFormat, codecOptions;
    std::optional<long> zeroFrame;
    bool resume = false;
    bool quiet = false;
};

// Whether these options and files mean more than one picture: a numbered, video or "-" file on either side,
// or an option that only clips have.
bool IsClip(const ClipOptions& options, const std::string& input, const std::string& output);

} // namespace fxhost
