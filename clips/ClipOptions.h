#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "toolkit/PictureFile.h"

namespace fxhost {

// What happens to numbered pictures that do not exist.
enum class MissingFrames {
    Error, // the run does not start
    Hold,  // the picture before is used; before the first one, the first one
    Black, // a black picture is used, transparent when the pictures have alpha
    Skip,  // these frames are left out
};

// What happens to interlaced video.
enum class Interlacing {
    Refuse,
    Deinterlace, // one frame is made of each pair of fields
    Keep,        // a frame has the rows of both fields
};

// The command-line options of a clip, as the user wrote them; empty where not given.
struct ClipOptions {
    std::string frames, fps, shard, keys, raw, audio;
    std::string codec, pixelFormat, codecOptions;
    std::optional<long> zeroFrame;
    Interlacing interlacing = Interlacing::Refuse;
    MissingFrames missing = MissingFrames::Error;
    bool resume = false;
    bool keepExisting = false;   // do not replace existing files
    bool allowTruncated = false; // a video may end before the number of frames that it declares
    bool dryRun = false;
    bool quiet = false;
};

// The options that a clip shares with a single picture.
struct ClipRequest {
    std::string input;                    // file, number pattern, "-", or empty for an empty layer
    unsigned width = 0, height = 0;       // of the empty layer, in pixels
    std::string output;                   // number pattern, video, "-", or /dev/null
    PictureReading reading;               // of the input; of videos and pipes only depth and alpha
    PictureWriting writing;               // of the output; of videos and pipes only alpha
    double time = 0;                      // seconds that are added to the time of every frame
    std::uint64_t identity = 0;           // digest of the effect and everything else that frames depend on
    std::vector<std::string> otherInputs; // files that are read besides the input
};

// True when these options and files ask for more than one picture: a number pattern, video or "-" as input or
// output, or an option that only clips have.
bool IsClip(const ClipOptions& options, const std::string& input, const std::string& output);

} // namespace fxhost
