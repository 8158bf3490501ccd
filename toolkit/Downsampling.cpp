#include "toolkit/Downsampling.h"

#include <algorithm>
#include <cmath>
#include <type_traits>

namespace fxhost {

namespace {

using Mean = std::array<double, 4>;

template <class Channel>
Mean MeanOf(const Picture& picture, const PixelBox& box) {
    Mean sums = {}, weighted = {};
    for (unsigned y = box.top; y < box.bottom; ++y) {
        const auto* pixel = reinterpret_cast<const Channel*>(picture.Row(y)) + std::size_t{box.left} * 4;
        for (unsigned x = box.left; x < box.right; ++x, pixel += 4)
            for (unsigned k = 0; k < 4; ++k) {
                sums[k] += static_cast<double>(pixel[k]);
                weighted[k] += static_cast<double>(pixel[k]) * static_cast<double>(pixel[0]);
            }
    }
    const double count = double(box.right - box.left) * double(box.bottom - box.top);
    Mean mean;
    for (unsigned k = 0; k < 4; ++k)
        mean[k] = k == 0 || sums[0] <= 0 ? sums[k] / count : weighted[k] / sums[0];
    return mean;
}

template <class Channel>
void Fill(const Picture& picture, unsigned across, unsigned down, Picture& result) {
    for (unsigned y = 0; y < result.height; ++y) {
        auto* pixel = reinterpret_cast<Channel*>(result.Row(y));
        for (unsigned x = 0; x < result.width; ++x) {
            const PixelBox box{x * across, y * down, std::min((x + 1) * across, picture.width),
                               std::min((y + 1) * down, picture.height)};
            for (const double mean : MeanOf<Channel>(picture, box))
                *pixel++ = static_cast<Channel>(std::is_integral_v<Channel> ? std::floor(mean + 0.5) : mean);
        }
    }
}

} // namespace

std::array<double, 4> BoxMean(const Picture& picture, const PixelBox& box) {
    return picture.depth == 8    ? MeanOf<std::uint8_t>(picture, box)
           : picture.depth == 16 ? MeanOf<std::uint16_t>(picture, box)
                                 : MeanOf<float>(picture, box);
}

Picture Downsampled(const Picture& picture, unsigned across, unsigned down) {
    if (across <= 1 && down <= 1)
        return picture;
    Picture result((picture.width + across - 1) / across, (picture.height + down - 1) / down, picture.depth);
    const auto fill = picture.depth == 8    ? Fill<std::uint8_t>
                      : picture.depth == 16 ? Fill<std::uint16_t>
                                            : Fill<float>;
    fill(picture, across, down, result);
    return result;
}

} // namespace fxhost
