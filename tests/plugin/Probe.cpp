#include "tests/plugin/Probe.h"

#include <cmath>
#include <cstring>
#include <gtest/gtest.h>

#include "platform/CGL.h"

namespace probe {

namespace {

using fxhost::Picture;

template <class Channel>
std::vector<double> Read(const Picture& picture) {
    std::vector<Channel> channels(picture.bytes.size() / sizeof(Channel));
    std::memcpy(channels.data(), picture.bytes.data(), picture.bytes.size());
    return {channels.begin(), channels.end()};
}

// The channels, in the depth's own range.
std::vector<double> ChannelsOf(const Picture& picture) {
    return picture.depth == 8    ? Read<std::uint8_t>(picture)
           : picture.depth == 16 ? Read<std::uint16_t>(picture)
                                 : Read<float>(picture);
}

template <class Channel>
void Write(const std::vector<double>& values, Picture& picture) {
    const std::vector<Channel> channels(values.begin(), values.end());
    std::memcpy(picture.bytes.data(), channels.data(), picture.bytes.size());
}

Picture PictureOf(const std::vector<double>& channels, unsigned width, unsigned height, unsigned depth) {
    Picture picture(width, height, depth);
    (depth == 8 ? Write<std::uint8_t> : depth == 16 ? Write<std::uint16_t> : Write<float>)(channels, picture);
    return picture;
}

double White(unsigned depth) {
    return depth == 8 ? 255 : depth == 16 ? 32768 : 1;
}

stricthost::Options OptionsOf(Personality personality, bool bgra) {
    stricthost::Options options;
    options.quirks.bgra = bgra;
    options.personality = personality;
    options.rowPadding = 20; // rows that do not begin at a whole number of wide pixels
    options.currentContext = []() -> void* { return CGLGetCurrentContext(); };
    return options;
}

} // namespace

Host::Host(const char* name, Personality personality, bool bgra)
    : StrictHost(std::filesystem::path(FX_PLUGIN_FOLDER) / (std::string(name) + ".plugin"),
                 OptionsOf(personality, bgra)) {
    GlobalSetup();
    ParamsSetup();
}

Host::~Host() {
    Finish();
    for (const std::string& text : Violations())
        ADD_FAILURE() << text;
}

Instance& Host::Apply(unsigned width, unsigned height, unsigned reach) {
    Instance& instance = NewInstance(static_cast<A_long>(width), static_cast<A_long>(height));
    instance.UpdateUI();
    instance.SetValue(Amount, 1.0);
    instance.SetValue(Reach, double(reach));
    return instance;
}

Picture Noise(unsigned width, unsigned height, unsigned depth, std::uint32_t seed) {
    std::vector<double> channels(std::size_t{width} * height * 4);
    std::uint32_t state = seed * 2654435761u + 1;
    for (double& channel : channels) {
        state = state * 1664525u + 1013904223u;
        const double unit = (state >> 8) / 16777216.0;
        channel = depth == 32 ? std::floor(unit * 1024) / 1024 : std::floor(unit * (White(depth) + 1));
    }
    return PictureOf(channels, width, height, depth);
}

Picture Expected(const Picture& input, unsigned reach, int grow) {
    const int width = static_cast<int>(input.width), height = static_cast<int>(input.height);
    const int wide = width + 2 * grow, high = height + 2 * grow;
    const auto from = ChannelsOf(input);
    std::vector<double> channels;
    for (int i = 0; i < wide * high * 4; ++i) {
        const int x = i / 4 % wide - grow, y = i / 4 / wide - grow;
        const bool inside = x >= 0 && y >= 0 && x < width && y < height;
        const double value = inside ? from[static_cast<std::size_t>((y * width + x) * 4 + i % 4)] : 0;
        channels.push_back(inside && x < static_cast<int>(reach) ? White(input.depth) - value : value);
    }
    return PictureOf(channels, static_cast<unsigned>(wide), static_cast<unsigned>(high), input.depth);
}

std::string Difference(const stricthost::FrameResult& result, const Picture& expected) {
    const Picture& got = result.picture;
    if (result.error != PF_Err_NONE)
        return "error " + std::to_string(result.error);
    if (got.width != expected.width || got.height != expected.height || got.depth != expected.depth)
        return std::to_string(got.width) + "x" + std::to_string(got.height) + " at " +
               std::to_string(got.depth) + " bits";
    // The engine holds 16 bits in twice the range, where the negative of an even number can be odd.
    const double tolerance = got.depth == 32 ? 1e-6 : got.depth == 16 ? 1.0 : 0.0;
    const auto a = ChannelsOf(got), b = ChannelsOf(expected);
    for (std::size_t i = 0; i < a.size(); ++i)
        if (!(std::abs(a[i] - b[i]) <= tolerance))
            return "channel " + std::to_string(i % 4) + " at " + std::to_string(i / 4 % got.width) + "," +
                   std::to_string(i / 4 / got.width) + " is " + std::to_string(a[i]) + " instead of " +
                   std::to_string(b[i]);
    return {};
}

} // namespace probe
