#include "clips/EncoderFormats.h"

#include <algorithm>
#include <sstream>
#include <string_view>

#include "clips/ChildProcess.h"

namespace fxhost {

namespace {

struct Choice {
    const char* format;
    bool deep, alpha;
    bool halved; // chroma in both directions
};

constexpr Choice s_Choices[] = {
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

std::vector<std::string> EncoderFormats(const std::string& encoder) {
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

std::string UsualFormat(const std::vector<std::string>& formats, bool deep, bool alpha, bool odd) {
    // JPEG has the full range; others take its formats along, and are better read without.
    const auto isJpeg = [](std::string_view format) { return format.starts_with("yuvj"); };
    const bool wantsJpeg = !formats.empty() && isJpeg(formats.front());
    const auto find = [&](bool withDepth, bool withAlpha) -> std::string {
        for (const Choice& choice : s_Choices)
            if (choice.deep == withDepth && choice.alpha == withAlpha && !(choice.halved && odd) &&
                isJpeg(choice.format) == wantsJpeg &&
                std::find(formats.begin(), formats.end(), choice.format) != formats.end())
                return choice.format;
        return "";
    };
    // What is asked for, else more, else less.
    const bool orders[][2] = {{deep, alpha}, {!deep, alpha}, {deep, !alpha}, {!deep, !alpha}};
    for (const auto& order : orders)
        if (const std::string format = find(order[0], order[1]); !format.empty())
            return format;
    return formats.empty() ? "" : formats.front();
}

} // namespace fxhost
