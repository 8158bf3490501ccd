#pragma once

#include <memory>
#include <string>
#include <vector>

// A decoded picture of red, green, blue and straight alpha. Rows are not padded; the first one is the top
// row.
struct DecodedImage {
    struct Deleter {
        void operator()(void* pixels) const;
    };

    unsigned width = 0;
    unsigned height = 0;
    unsigned depth = 0;                    // bits per channel: 8, or 32 (float) for Radiance HDR
    std::unique_ptr<void, Deleter> pixels; // null when decoding failed
    std::string errorText;                 // why it failed
};

// Decodes the bytes of an image file. May be called from any thread.
DecodedImage DecodeImage(const std::vector<unsigned char>& file);
