#include "clips/ClipOptions.h"

#include "clips/NumberPattern.h"
#include "clips/VideoProbe.h"

namespace fxhost {

bool IsClip(const ClipOptions& options, const std::string& input, const std::string& output) {
    const auto isMany = [](const char* option, const std::string& path) {
        return path == "-" || IsVideoName(path) || NumberPattern::Parse(option, path);
    };
    return !options.frames.empty() || !options.shard.empty() || options.resume || !options.raw.empty() ||
           isMany("--input", input) || isMany("--output", output);
}

} // namespace fxhost
