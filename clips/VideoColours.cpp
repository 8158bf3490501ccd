#include "clips/VideoColours.h"

#include <algorithm>
#include <iterator>

namespace fxhost {

namespace {

struct Matrix {
    const char* name;   // FFmpeg's
    const char* number; // in ITU-T H.273; zscale has no name for each of them
    const char* scaler; // name in FFmpeg's "scale" filter
};

constexpr Matrix s_Matrices[] = {
    {"smpte170m", "6", "smpte170m"}, {"bt709", "1", "bt709"},
    {"bt470bg", "5", "bt470bg"},     {"fcc", "4", "fcc"},
    {"smpte240m", "7", "smpte240m"}, {"bt2020nc", "9", "bt2020"},
    {"bt2020c", "9", "bt2020"}, // Constant luminance has no exact equivalent.
};

const Matrix& Find(const std::string& name) {
    const auto* const found = std::find_if(std::begin(s_Matrices), std::end(s_Matrices),
                                           [&](const Matrix& matrix) { return matrix.name == name; });
    return found == std::end(s_Matrices) ? s_Matrices[0] : *found;
}

// zimg does not support subsampled chroma with odd widths or heights.
bool ZimgSupports(unsigned width, unsigned height) {
    return width % 2 == 0 && height % 2 == 0;
}

constexpr const char* s_Scaler = "scale=flags=bilinear+accurate_rnd+full_chroma_int";

} // namespace

std::string DefaultMatrix(unsigned width, unsigned height) {
    return width >= 1280 || height >= 720 ? "bt709" : "smpte170m";
}

std::string ToRgbFilter(const VideoInfo& info) {
    if (!info.isYuv)
        return s_Scaler;
    const Matrix& matrix = Find(info.matrix.empty() ? DefaultMatrix(info.width, info.height) : info.matrix);
    if (!ZimgSupports(info.width, info.height))
        return std::string(s_Scaler) + ":in_color_matrix=" + matrix.scaler;
    return std::string("zscale=matrixin=") + matrix.number + ":matrix=gbr:range=full";
}

std::string FromRgbFilter(const ColourTags& tags, unsigned width, unsigned height) {
    const Matrix& matrix = Find(tags.matrix);
    const std::string range = tags.isFullRange ? "pc" : "tv"; // Both filters and the tag use these names.
    std::string filter = "zscale=matrixin=gbr:rangein=pc:chromal=left:matrix=";
    if (ZimgSupports(width, height))
        filter += matrix.number + (":range=" + range);
    else
        filter = std::string(s_Scaler) + ":out_range=" + range + ":out_color_matrix=" + matrix.scaler;
    return filter + ",setparams=range=" + range + ":colorspace=" + tags.matrix +
           ":color_primaries=" + tags.primaries + ":color_trc=" + tags.transfer;
}

} // namespace fxhost
