#pragma once

#include <cstdint>
#include <vector>

#include "pictures/Picture.h"

namespace fxhost {

// Layout of the raw frames in the pipes to and from FFmpeg. YUV video is exchanged as RGB planes, because the
// filters for colour conversion work on planes. RGB video is exchanged pixel by pixel, because FFmpeg splits
// only that without loss.
struct PipeFormat {
    unsigned width = 0, height = 0; // pixels
    bool isDeep = false;            // 16 bits a channel, 0..65535 in native byte order; otherwise 8 bits
    bool isPlanar = false; // planes green, blue, red, alpha; otherwise ARGB (8 bits) or RGBA (16 bits)
    bool hasAlpha = true;  // false when there is no alpha plane; interleaved pixels always have alpha

    // FFmpeg's name of this pixel format.
    const char* name() const;
    // Bytes of one frame.
    std::size_t bytes() const;
};

// Converts an 8-bit frame to depth 8, or a 16-bit frame to `depth` 16 or 32. Without an alpha plane the
// picture is opaque.
Picture PictureOf(std::vector<std::uint8_t> frame, const PipeFormat& format, unsigned depth);

// Converts a picture of depth 8 to an 8-bit frame, other depths to a 16-bit frame. Values are rounded and
// clamped to 0..65535.
std::vector<std::uint8_t> FrameOf(const Picture& picture, const PipeFormat& format);

} // namespace fxhost
