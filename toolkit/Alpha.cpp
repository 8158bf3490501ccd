#include "toolkit/Alpha.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <type_traits>

namespace fxhost {

namespace {

constexpr double s_Max8 = 255, s_Max16 = 32768; // full value of an integer channel

template <class Channel>
Channel Rounded(double value, double max) {
    if constexpr (std::is_floating_point_v<Channel>)
        return static_cast<Channel>(value);
    else
        return static_cast<Channel>(std::lround(std::clamp(value, 0.0, max)));
}

// Calls factor(alpha) with alpha from 0 to 1 for each pixel, and multiplies its colours by the result.
template <class Channel, class Factor>
void ScaleColours(Picture& picture, double max, const Factor& factor) {
    auto* pixel = reinterpret_cast<Channel*>(picture.bytes.data());
    const std::size_t count = std::size_t{picture.width} * picture.height;
    for (std::size_t i = 0; i < count; ++i, pixel += 4) {
        const double alpha = static_cast<double>(pixel[0]) / max;
        if (alpha == 0 || alpha == 1)
            continue;
        for (int c = 1; c < 4; ++c)
            pixel[c] = Rounded<Channel>(static_cast<double>(pixel[c]) * factor(alpha), max);
    }
}

template <class Factor>
void ScaleAtAnyDepth(Picture& picture, const Factor& factor) {
    if (picture.depth == 8)
        ScaleColours<std::uint8_t>(picture, s_Max8, factor);
    else if (picture.depth == 16)
        ScaleColours<std::uint16_t>(picture, s_Max16, factor);
    else
        ScaleColours<float>(picture, 1, factor);
}

} // namespace

void MakeOpaque(Picture& picture) {
    const auto fill = [&]<class Channel>(Channel full) {
        auto* channel = reinterpret_cast<Channel*>(picture.bytes.data());
        for (std::size_t i = 0; i < picture.bytes.size() / sizeof(Channel); i += 4)
            channel[i] = full;
    };
    if (picture.depth == 8)
        fill(std::uint8_t{255});
    else if (picture.depth == 16)
        fill(std::uint16_t{32768});
    else
        fill(1.0f);
}

void Premultiply(Picture& picture) {
    ScaleAtAnyDepth(picture, [](double alpha) { return alpha; });
}

Picture Premultiplied(Picture picture) {
    Premultiply(picture);
    return picture;
}

void Unpremultiply(Picture& picture) {
    ScaleAtAnyDepth(picture, [](double alpha) { return 1 / alpha; });
}

} // namespace fxhost
