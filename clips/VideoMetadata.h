#pragma once

#include <map>
#include <string>
#include <vector>

namespace fxhost {

// What a video file declares besides its frames and its sound. Texts are FFmpeg's and empty where the file
// says nothing.
struct VideoMetadata {
    std::map<std::string, std::string>
        tags; // of the whole file, such as "title"; without those of the container
    std::size_t chapters = 0;
    std::vector<std::string> subtitles; // codecs, in the order of the streams
    std::vector<std::string>
        otherStreams;                // kinds of streams that are neither video, sound, subtitles nor timecode
    std::string timecode;            // of the first frame
    std::string primaries, transfer; // such as "bt709"
    std::string pixelAspect;         // such as "4:3"; empty when pixels are square
    std::string fieldOrder;          // such as "tt"; empty for progressive video
    bool isFullRange = false;
    std::string masteringDisplay, contentLight; // HDR10, in the syntax of the H.265 encoder
};

// Names, for people, of what `before` has and `after` has not or has otherwise.
std::vector<std::string> LostMetadata(const VideoMetadata& before, const VideoMetadata& after);

// The codec for subtitles of the codec `from` in a file with this extension; "copy" where it can stay, empty
// where the file cannot store them.
std::string SubtitleCodec(const std::string& extension, const std::string& from);

} // namespace fxhost
