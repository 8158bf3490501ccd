#pragma once

#include <memory>
#include <vector>

// A decoded picture: red, green, blue, alpha, tightly packed rows, first row on top.
struct DecodedImage {
    struct Deleter {
        void operator()(void* pixels) const;
    };

    unsigned width = 0;
    unsigned height = 0;
    unsigned depth = 0;                    // bits per channel: 8, or 32 (float) for Radiance HDR
    std::unique_ptr<void, Deleter> pixels; // null when decoding failed
};

// Any thread.
DecodedImage DecodeImage(const std::vector<unsigned char>& file);
