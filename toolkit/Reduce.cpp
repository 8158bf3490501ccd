#include "toolkit/Reduce.h"

#include <algorithm>
#include <cmath>
#include <type_traits>

namespace fxhost {

namespace {

struct Block {
    unsigned left, top, right, bottom; // half open
};

// Alpha first; colours of a block without alpha are the plain mean.
template <class Channel>
void Mean(const Picture& picture, const Block& block, Channel* result) {
    double sums[4] = {}, weighted[4] = {};
    for (unsigned y = block.top; y < block.bottom; ++y) {
        const auto* pixel = reinterpret_cast<const Channel*>(picture.Row(y)) + std::size_t{block.left} * 4;
        for (unsigned x = block.left; x < block.right; ++x, pixel += 4)
            for (int k = 0; k < 4; ++k) {
                sums[k] += static_cast<double>(pixel[k]);
                weighted[k] += static_cast<double>(pixel[k]) * static_cast<double>(pixel[0]);
            }
    }
    const double count = double(block.right - block.left) * double(block.bottom - block.top);
    for (int k = 0; k < 4; ++k) {
        const double mean = k == 0 || sums[0] <= 0 ? sums[k] / count : weighted[k] / sums[0];
        result[k] = static_cast<Channel>(std::is_integral_v<Channel> ? std::floor(mean + 0.5) : mean);
    }
}

template <class Channel>
void Fill(const Picture& picture, unsigned across, unsigned down, Picture& reduced) {
    for (unsigned y = 0; y < reduced.height; ++y) {
        auto* row = reinterpret_cast<Channel*>(reduced.Row(y));
        for (unsigned x = 0; x < reduced.width; ++x)
            Mean(picture,
                 Block{x * across, y * down, std::min((x + 1) * across, picture.width),
                       std::min((y + 1) * down, picture.height)},
                 row + std::size_t{x} * 4);
    }
}

} // namespace

Picture Reduced(const Picture& picture, unsigned across, unsigned down) {
    if (across <= 1 && down <= 1)
        return picture;
    Picture reduced((picture.width + across - 1) / across, (picture.height + down - 1) / down, picture.depth);
    const auto fill = picture.depth == 8    ? Fill<std::uint8_t>
                      : picture.depth == 16 ? Fill<std::uint16_t>
                                            : Fill<float>;
    fill(picture, across, down, reduced);
    return reduced;
}

} // namespace fxhost
