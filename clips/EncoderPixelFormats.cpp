#include "clips/EncoderPixelFormats.h"

#include <algorithm>
#include <sstream>
#include <string_view>

#include "clips/ChildProcess.h"

namespace fxhost {

namespace {

struct PixelFormatRow {
    const char* name;
    bool isDeep, hasAlpha;
    bool isSubsampled; // 4:2:0: chroma is subsampled in both directions
};

// In order of preference.
constexpr PixelFormatRow s_PixelFormats[] = {
    {"yuva420p", false, true, true},     {"yuva444p", false, true, false},
    {"bgra", false, true, false},        {"argb", false, true, false},
    {"rgba", false, true, false},        {"yuva420p10le", true, true, true},
    {"yuva444p10le", true, true, false}, {"yuva444p12le", true, true, false},
    {"gbrap16le", true, true, false},    {"rgba64be", true, true, false},
    {"yuv420p10le", true, false, true},  {"yuv422p10le", true, false, false},
    {"yuv444p10le", true, false, false}, {"yuv444p12le", true, false, false},
    {"gbrp16le", true, false, false},    {"rgb48be", true, false, false},
    {"yuv420p", false, false, true},     {"yuvj420p", false, false, true},
    {"yuv422p", false, false, false},    {"yuvj422p", false, false, false},
    {"yuv444p", false, false, false},    {"yuvj444p", false, false, false},
    {"bgr0", false, false, false},       {"rgb24", false, false, false},
};

} // namespace

std::vector<std::string> EncoderPixelFormats(const std::string& encoder) {
    std::istringstream help(OutputOf({"ffmpeg", "-v", "error", "-hide_banner", "-h", "encoder=" + encoder},
                                     "--codec " + encoder));
    const std::string title = "Supported pixel formats:";
    std::vector<std::string> formats;
    for (std::string line; std::getline(help, line);) {
        const std::size_t found = line.find(title);
        if (found == std::string::npos)
            continue;
        std::istringstream words(line.substr(found + title.size()));
        for (std::string word; words >> word;)
            formats.push_back(word);
    }
    return formats;
}

std::string PreferredPixelFormat(const std::vector<std::string>& formats, bool deep, bool alpha, bool odd) {
    // The yuvj formats are those of JPEG, with full range. Other encoders accept them too, but their files
    // are read more reliably without.
    const auto isJpeg = [](std::string_view format) { return format.starts_with("yuvj"); };
    const bool wantsJpeg = !formats.empty() && isJpeg(formats.front());
    const auto find = [&](bool withDepth, bool withAlpha) -> std::string {
        for (const PixelFormatRow& row : s_PixelFormats)
            if (row.isDeep == withDepth && row.hasAlpha == withAlpha && !(row.isSubsampled && odd) &&
                isJpeg(row.name) == wantsJpeg &&
                std::find(formats.begin(), formats.end(), row.name) != formats.end())
                return row.name;
        return "";
    };
    // Exactly what is asked for, otherwise another depth, otherwise without alpha.
    const bool orders[][2] = {{deep, alpha}, {!deep, alpha}, {deep, !alpha}, {!deep, !alpha}};
    for (const auto& order : orders)
        if (const std::string format = find(order[0], order[1]); !format.empty())
            return format;
    return formats.empty() ? "" : formats.front();
}

} // namespace fxhost
