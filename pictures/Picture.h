#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace fxhost {

struct PictureOrigin; // toolkit/PictureOrigin.h

// Pixels in the layout of After Effects: alpha, red, green, blue with straight alpha, tightly packed, top row
// first. Channels run 0..255 at depth 8, 0..32768 at depth 16, and nominally 0..1 as float at depth 32.
struct Picture {
    Picture() = default;
    Picture(unsigned pictureWidth, unsigned pictureHeight, unsigned bitsPerChannel)
        : width(pictureWidth), height(pictureHeight), depth(bitsPerChannel),
          bytes(std::size_t{pictureHeight} * RowBytes()) {}

    std::size_t RowBytes() const { return std::size_t{width} * depth / 2; }
    std::uint8_t* Row(unsigned y) { return bytes.data() + y * RowBytes(); }
    const std::uint8_t* Row(unsigned y) const { return bytes.data() + y * RowBytes(); }

    unsigned width = 0;
    unsigned height = 0;
    unsigned depth = 8;              // 8, 16 or 32
    std::vector<std::uint8_t> bytes; // transparent black at first
    // What the file declares that the picture was read from; null when there is none.
    std::shared_ptr<const PictureOrigin> origin;
};

// The largest width and height that the tool takes, in pixels.
constexpr unsigned MaxExtent = 16384;

} // namespace fxhost
