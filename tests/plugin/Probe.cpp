#include "tests/plugin/Probe.h"

#include <cmath>
#include <cstring>

#include "platform/CGL.h"

namespace probe {

namespace {

using fxhost::Picture;

// A channel in the depth's own range.
double Get(const Picture& picture, unsigned x, unsigned y, unsigned channel) {
    const std::size_t bytes = picture.depth / 8;
    const std::uint8_t* const at = picture.Row(y) + (std::size_t{x} * 4 + channel) * bytes;
    if (picture.depth == 8)
        return *at;
    if (picture.depth == 16) {
        std::uint16_t value;
        std::memcpy(&value, at, sizeof value);
        return value;
    }
    float value;
    std::memcpy(&value, at, sizeof value);
    return value;
}

void Set(Picture& picture, unsigned x, unsigned y, unsigned channel, double number) {
    const std::size_t bytes = picture.depth / 8;
    std::uint8_t* const at = picture.Row(y) + (std::size_t{x} * 4 + channel) * bytes;
    if (picture.depth == 8) {
        *at = static_cast<std::uint8_t>(number);
    } else if (picture.depth == 16) {
        const auto value = static_cast<std::uint16_t>(number);
        std::memcpy(at, &value, sizeof value);
    } else {
        const auto value = static_cast<float>(number);
        std::memcpy(at, &value, sizeof value);
    }
}

double White(unsigned depth) {
    return depth == 8 ? 255 : depth == 16 ? 32768 : 1;
}

} // namespace

std::string Bundle(const char* name) {
    return std::string(FX_PLUGIN_FOLDER) + "/" + name + ".plugin";
}

stricthost::Options Options(stricthost::Personality personality) {
    stricthost::Options options;
    options.personality = personality;
    options.rowPadding = 20; // rows that do not begin at a whole number of wide pixels
    options.currentContext = []() -> void* { return CGLGetCurrentContext(); };
    return options;
}

Picture Noise(unsigned width, unsigned height, unsigned depth, std::uint32_t seed) {
    Picture picture(width, height, depth);
    std::uint32_t state = seed * 2654435761u + 1;
    for (unsigned y = 0; y < height; ++y)
        for (unsigned i = 0; i < width * 4; ++i) {
            state = state * 1664525u + 1013904223u;
            const double unit = (state >> 8) / 16777216.0;
            Set(picture, i / 4, y, i % 4,
                depth == 32 ? std::ldexp(std::floor(std::ldexp(unit, 10)), -10)
                            : std::floor(unit * (White(depth) + 1)));
        }
    return picture;
}

Picture Expected(const Picture& input, bool amount, unsigned reach, int grow) {
    const auto larger = [&](unsigned extent) {
        return static_cast<unsigned>(static_cast<int>(extent) + 2 * grow);
    };
    Picture expected(larger(input.width), larger(input.height), input.depth);
    for (unsigned y = 0; y < expected.height; ++y)
        for (unsigned x = 0; x < expected.width; ++x) {
            const int fromX = static_cast<int>(x) - grow, fromY = static_cast<int>(y) - grow;
            if (fromX < 0 || fromY < 0 || fromX >= static_cast<int>(input.width) ||
                fromY >= static_cast<int>(input.height))
                continue;
            for (unsigned k = 0; k < 4; ++k) {
                const double value =
                    Get(input, static_cast<unsigned>(fromX), static_cast<unsigned>(fromY), k);
                const bool negative = amount && fromX < static_cast<int>(reach);
                Set(expected, x, y, k, negative ? White(input.depth) - value : value);
            }
        }
    return expected;
}

std::string Difference(const Picture& got, const Picture& expected) {
    if (got.width != expected.width || got.height != expected.height || got.depth != expected.depth)
        return std::to_string(got.width) + "x" + std::to_string(got.height) + " at " +
               std::to_string(got.depth) + " bits instead of " + std::to_string(expected.width) + "x" +
               std::to_string(expected.height) + " at " + std::to_string(expected.depth);
    // The engine holds 16 bits in twice the range, where the negative of an even number can be odd.
    const double tolerance = got.depth == 32 ? 1e-6 : got.depth == 16 ? 1.0 : 0.0;
    for (unsigned y = 0; y < got.height; ++y)
        for (unsigned x = 0; x < got.width; ++x)
            for (unsigned k = 0; k < 4; ++k)
                if (!(std::abs(Get(got, x, y, k) - Get(expected, x, y, k)) <= tolerance))
                    return "channel " + std::to_string(k) + " at " + std::to_string(x) + "," +
                           std::to_string(y) + " is " + std::to_string(Get(got, x, y, k)) + " instead of " +
                           std::to_string(Get(expected, x, y, k));
    return {};
}

} // namespace probe
