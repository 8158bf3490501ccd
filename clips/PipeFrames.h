#pragma once

#include <cstdint>
#include <vector>

#include "pictures/Picture.h"

// Raw frames as they go through the pipes to and from FFmpeg. Video goes as planes, which its filters work
// on; RGB goes pixel by pixel, as FFmpeg takes it apart without loss only so.
namespace fxhost {

struct PipeFormat {
    unsigned width = 0, height = 0;
    bool isDeep = false;   // 16 bits a channel, 0..65535 in the machine's byte order, else 8
    bool isPlanar = false; // green, blue, red and then alpha; else ARGB at 8 bits and RGBA at 16
    bool hasAlpha = true;  // whether planes have alpha; pixels always do

    const char* name() const; // FFmpeg's
    std::size_t bytes() const;
};

// A picture of depth 8 from 8 bits, of `depth` 16 or 32 from 16. Opaque where there is no alpha.
Picture PictureOf(std::vector<std::uint8_t> frame, const PipeFormat& format, unsigned depth);

// A frame of 8 bits from depth 8, of 16 from other depths, rounded and clamped to 0..65535.
std::vector<std::uint8_t> FrameOf(const Picture& picture, const PipeFormat& format);

} // namespace fxhost
