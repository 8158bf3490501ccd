#include "clips/VideoFormat.h"

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <thread>

#include "clips/EncoderPixelFormats.h"
#include "clips/VideoColours.h"
#include "toolkit/Errors.h"

namespace fxhost {

namespace {

struct FormatRow {
    const char* extension;
    bool isDeep;   // for more than 8 bits a channel
    bool hasAlpha; // for pictures with alpha
    const char* codec;
    const char* pixelFormat;
    const char* oddFormat; // replaces a 4:2:0 format when width or height is odd; null when not needed
    const char* arguments;
    const char* partExtension;
};

constexpr const char* s_X264 = "-preset veryfast -crf 16";
constexpr const char* s_X265 = "-preset veryfast -crf 16 -tag:v hvc1 -x265-params log-level=error";
constexpr const char* s_Vp9 = "-b:v 0 -crf 20 -deadline good -cpu-used 4 -row-mt 1";
constexpr const char* s_Ffv1 = "-level 3 -g 1 -slices 4 -slicecrc 1";

// The first matching row is used. A row without alpha also matches pictures with alpha.
constexpr FormatRow s_Rows[] = {
    {".mp4", false, false, "libx264", "yuv420p", "yuv444p", s_X264, ".mov"},
    {".mp4", true, false, "libx265", "yuv420p10le", "yuv444p10le", s_X265, ".mov"},
    {".m4v", false, false, "libx264", "yuv420p", "yuv444p", s_X264, ".mov"},
    {".m4v", true, false, "libx265", "yuv420p10le", "yuv444p10le", s_X265, ".mov"},
    {".mov", false, true, "prores_ks", "yuva444p10le", nullptr, "-profile:v 4444 -vendor apl0", ".mov"},
    {".mov", true, true, "prores_ks", "yuva444p10le", nullptr, "-profile:v 4444 -vendor apl0", ".mov"},
    {".mov", false, false, "prores_ks", "yuv422p10le", nullptr, "-profile:v 3 -vendor apl0", ".mov"},
    {".mov", true, false, "prores_ks", "yuv422p10le", nullptr, "-profile:v 3 -vendor apl0", ".mov"},
    {".mkv", false, true, "ffv1", "bgra", nullptr, s_Ffv1, ".mkv"},
    {".mkv", true, true, "ffv1", "gbrap16le", nullptr, s_Ffv1, ".mkv"},
    {".mkv", false, false, "ffv1", "bgr0", nullptr, s_Ffv1, ".mkv"},
    {".mkv", true, false, "ffv1", "gbrp16le", nullptr, s_Ffv1, ".mkv"},
    {".avi", false, true, "ffv1", "bgra", nullptr, s_Ffv1, ".mkv"},
    {".avi", false, false, "ffv1", "bgr0", nullptr, s_Ffv1, ".mkv"},
    {".avi", true, false, "ffv1", "gbrp16le", nullptr, s_Ffv1, ".mkv"},
    {".mxf", false, false, "prores_ks", "yuv422p10le", nullptr, "-profile:v 3 -vendor apl0", ".mov"},
    {".mxf", true, false, "prores_ks", "yuv422p10le", nullptr, "-profile:v 3 -vendor apl0", ".mov"},
    {".webm", false, true, "libvpx-vp9", "yuva420p", nullptr, s_Vp9, ".webm"},
    {".webm", false, false, "libvpx-vp9", "yuv420p", "yuv444p", s_Vp9, ".webm"},
    {".webm", true, false, "libvpx-vp9", "yuv420p10le", "yuv444p10le", s_Vp9, ".webm"},
};

const FormatRow* FindRow(const std::string& extension, bool deep, bool alpha) {
    for (const FormatRow& row : s_Rows)
        if (extension == row.extension && row.isDeep == deep && (alpha || !row.hasAlpha))
            return &row;
    return nullptr;
}

std::string ExtensionOf(const std::string& path) {
    return std::filesystem::path(path).extension().string();
}

void AddWords(std::vector<std::string>& list, const std::string& text) {
    std::istringstream words(text);
    for (std::string word; words >> word;)
        list.push_back(word);
}

// Adds the conversion from RGB and the colour tags. Some encoders take the tags from the frames, others from
// the options, so both are set.
void AddColours(std::vector<std::string>& list, const ColourTags& tags) {
    list.insert(list.end(), {"-color_range", tags.isFullRange ? "pc" : "tv", "-colorspace", tags.matrix,
                             "-color_primaries", tags.primaries, "-color_trc", tags.transfer});
}

// RGB has no matrix, but may have other tags. Returns the filter that sets them; may be empty.
std::string AddColoursOfRgb(std::vector<std::string>& list, const VideoContent& content) {
    std::string filter;
    const auto add = [&](const std::string& tag, const char* option, const char* parameter) {
        if (tag.empty())
            return;
        list.insert(list.end(), {option, tag});
        filter += (filter.empty() ? "setparams=" : ":") + std::string(parameter) + "=" + tag;
    };
    add(content.primaries, "-color_primaries", "color_primaries");
    add(content.transfer, "-color_trc", "color_trc");
    return filter;
}

// The arguments of the encoder, with the HDR10 data that only H.265 takes as options.
std::string ArgumentsOf(const FormatRow& row, const VideoContent& content) {
    std::string arguments = row.arguments;
    if (std::string(row.codec) != "libx265")
        return arguments;
    if (!content.masteringDisplay.empty())
        arguments += ":hdr10=1:repeat-headers=1:master-display=" + content.masteringDisplay;
    if (!content.contentLight.empty())
        arguments += ":max-cll=" + content.contentLight;
    return arguments;
}

ColourTags TagsFor(const std::string& pixelFormat, const VideoContent& content, unsigned width,
                   unsigned height) {
    if (pixelFormat.starts_with("yuvj")) // The formats of JPEG fix these tags.
        return {"bt470bg", "bt470bg", "bt709", true};
    const bool known = !content.matrix.empty() && content.matrix != "gbr" && content.matrix != "rgb";
    const std::string matrix = known ? content.matrix : DefaultMatrix(width, height);
    const auto orMatrix = [&](const std::string& tag) { return tag.empty() ? matrix : tag; };
    return {matrix, orMatrix(content.primaries), orMatrix(content.transfer), content.isFullRange};
}

bool IsRgb(const std::string& pixelFormat) {
    return pixelFormat.starts_with("gbr") || pixelFormat.starts_with("rgb") ||
           pixelFormat.starts_with("bgr") || pixelFormat.starts_with("argb") ||
           pixelFormat.starts_with("abgr");
}

// FFmpeg would choose another format in silence.
void RequirePixelFormat(const std::string& codec, const std::string& pixelFormat) {
    if (pixelFormat.empty())
        return;
    const std::vector<std::string> known = EncoderPixelFormats(codec);
    if (known.empty() || std::find(known.begin(), known.end(), pixelFormat) != known.end())
        return;
    std::string list;
    for (const std::string& name : known)
        list += " " + name;
    throw WrongUse("--pixel-format " + pixelFormat + ": the encoder " + codec + " takes only" + list);
}

} // namespace

long VideoTimescale(const VideoContent& content) {
    constexpr long fineUnits = 90000; // at least this many when the video does not start at 0
    const long frames = content.rate.frames;
    return content.start == 0 ? frames : frames * std::max(1L, fineUnits / frames);
}

std::string CodecThreads() {
    return std::to_string(std::max(1u, std::thread::hardware_concurrency() / 2));
}

void RequireVideoExtension(const std::string& path) {
    if (!FindRow(ExtensionOf(path), false, false))
        throw WrongUse(
            "--output " + path +
            ": expected a video (.mp4, .m4v, .mov, .mkv, .webm, .avi or .mxf) or numbered pictures, such as "
            "out_####.png");
}

VideoFormat ChooseVideoFormat(const std::string& path, const EncoderOptions& options,
                              const VideoContent& content, unsigned width, unsigned height, unsigned depth) {
    RequireVideoExtension(path);
    const FormatRow& row = *FindRow(ExtensionOf(path), depth > 8, content.hasAlpha);
    const bool isDefaultCodec = options.codec.empty() || options.codec == row.codec;
    RequirePixelFormat(isDefaultCodec ? row.codec : options.codec, options.pixelFormat);
    const bool odd = (width % 2 || height % 2) && row.oddFormat;
    std::string pixelFormat = options.pixelFormat;
    if (pixelFormat.empty() && isDefaultCodec)
        pixelFormat = odd ? row.oddFormat : row.pixelFormat;
    if (pixelFormat.empty())
        pixelFormat = PreferredPixelFormat(EncoderPixelFormats(options.codec), depth > 8, content.hasAlpha,
                                           width % 2 || height % 2);

    VideoFormat format;
    format.partExtension = row.partExtension;
    format.keepsAlpha =
        row.hasAlpha || (content.hasAlpha && (!isDefaultCodec || !options.pixelFormat.empty()));
    format.arguments = {"-c:v", isDefaultCodec ? row.codec : options.codec};
    if (isDefaultCodec) {
        AddWords(format.arguments, ArgumentsOf(row, content));
        format.arguments.insert(format.arguments.end(), {"-threads", CodecThreads()});
    }
    if (!pixelFormat.empty())
        format.arguments.insert(format.arguments.end(), {"-pix_fmt", pixelFormat});
    format.isYuv = !IsRgb(pixelFormat);
    std::string filter;
    if (format.isYuv) {
        ColourTags tags = TagsFor(pixelFormat, content, width, height);
        tags.isFullRange &= format.arguments[1] != "prores_ks"; // ProRes is always of limited range.
        filter = FromRgbFilter(tags, width, height);
        AddColours(format.arguments, tags);
    } else {
        filter = AddColoursOfRgb(format.arguments, content);
    }
    if (!content.pixelAspect.empty()) {
        std::string ratio = content.pixelAspect;
        std::replace(ratio.begin(), ratio.end(), ':', '/');
        filter += (filter.empty() ? "setsar=" : ",setsar=") + ratio;
    }
    if (!filter.empty())
        format.arguments.insert(format.arguments.end(), {"-vf", filter});
    AddWords(format.arguments, options.arguments);
    return format;
}

} // namespace fxhost
