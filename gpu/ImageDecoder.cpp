#include "gpu/ImageDecoder.h"

#include <limits>
#include <string_view>

// The decoder is compiled into this file only and with internal linkage, because other libraries in the
// process may have a copy of their own.
#define STB_IMAGE_STATIC
#define STB_IMAGE_IMPLEMENTATION
#define STBI_NO_STDIO
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wunused-function"
#include <stb_image.h>
#pragma GCC diagnostic pop

namespace {

constexpr std::string_view s_RadianceSignature = "#?RADIANCE\n";
constexpr int s_Channels = 4;
// The best compression of any supported format: deflate stores 1032 bytes in one, each with eight pixels of
// one bit. A file whose header claims more pixels is damaged, and decoding it would only fill memory.
constexpr double s_MostPixelsPerByte = 8 * 1032;

bool IsRadiance(const std::vector<unsigned char>& file) {
    const std::string_view text(reinterpret_cast<const char*>(file.data()), file.size());
    return text.substr(0, s_RadianceSignature.size()) == s_RadianceSignature;
}

bool ClaimsTooManyPixels(const unsigned char* bytes, int size) {
    int width = 0, height = 0, channels = 0;
    const bool isKnown = stbi_info_from_memory(bytes, size, &width, &height, &channels) != 0;
    return isKnown && double{1} * width * height > s_MostPixelsPerByte * size;
}

} // namespace

void DecodedImage::Deleter::operator()(void* memory) const {
    stbi_image_free(memory);
}

DecodedImage DecodeImage(const std::vector<unsigned char>& file) {
    DecodedImage image;
    if (file.size() > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
        image.errorText = "the file is larger than 2 GiB";
        return image;
    }
    const int size = static_cast<int>(file.size());
    if (ClaimsTooManyPixels(file.data(), size)) {
        image.errorText = "the file is too short for the size that it states";
        return image;
    }
    int width = 0, height = 0, channels = 0;
    if (IsRadiance(file)) {
        image.depth = 32;
        image.pixels.reset(stbi_loadf_from_memory(file.data(), size, &width, &height, &channels, s_Channels));
    } else {
        image.depth = 8;
        image.pixels.reset(stbi_load_from_memory(file.data(), size, &width, &height, &channels, s_Channels));
    }
    if (!image.pixels) {
        image.errorText = stbi_failure_reason();
        return image;
    }
    image.width = static_cast<unsigned>(width);
    image.height = static_cast<unsigned>(height);
    return image;
}
