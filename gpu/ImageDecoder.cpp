#include "gpu/ImageDecoder.h"

#include <algorithm>
#include <limits>
#include <string_view>

#include "gpu/JpegTables.h"

// The decoder is compiled into this file only and with internal linkage, because other libraries in the
// process may have their own copy.
#define STB_IMAGE_STATIC
#define STB_IMAGE_IMPLEMENTATION
#define STBI_NO_STDIO
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wunused-function"
#include <stb_image.h>
#pragma GCC diagnostic pop

namespace {

constexpr std::string_view s_RadianceSignature = "#?RADIANCE\n";
constexpr std::string_view s_PngSignature = "\x89PNG\r\n\x1a\n";
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

// The decoder allocates the stated length of compressed pixels, up to 2 GiB, before it reads them.
bool HasOverlongPngChunk(std::string_view file) {
    constexpr std::size_t head = 8, checksum = 4; // bytes; the head is length and type
    if (!file.starts_with(s_PngSignature))
        return false;
    file.remove_prefix(s_PngSignature.size());
    while (file.size() >= head && file.substr(4, 4) != "IEND") {
        std::size_t length = 0;
        for (const char byte : file.substr(0, 4))
            length = length << 8 | static_cast<unsigned char>(byte);
        file.remove_prefix(head);
        if (length > file.size())
            return true;
        file.remove_prefix(std::min(length + checksum, file.size()));
    }
    return false;
}

bool IsPnm(std::string_view file) {
    return file.starts_with("P5") || file.starts_with("P6");
}

// The decoder computes width, height and largest value as int, without noticing that a number is too long.
bool HasOverlongPnmNumber(std::string_view file) {
    constexpr std::size_t mostDigits = 9;
    std::size_t at = 2;
    const auto skip = [&](std::string_view characters) {
        at = std::min(file.find_first_not_of(characters, at), file.size());
    };
    for (int number = 0; number < 3; ++number) {
        skip(" \t\n\v\f\r");
        while (at < file.size() && file[at] == '#') { // a comment, to the end of its line
            at = std::min(file.find_first_of("\n\r", at), file.size());
            skip(" \t\n\v\f\r");
        }
        const std::size_t first = at;
        skip("0123456789");
        if (at - first > mostDigits)
            return true;
    }
    return false;
}

// The decoder reads beyond its own memory when it converts these to four channels.
bool IsDeepPnm(const std::vector<unsigned char>& file, int size) {
    return file.size() > 1 && file[0] == 'P' && stbi_is_16_bit_from_memory(file.data(), size) != 0;
}

// Why a file must not be given to the decoder, or an empty text.
std::string Objection(const std::vector<unsigned char>& file, int size) {
    if (HasOverlongHuffmanTable(file))
        return "a Huffman table of the JPEG file has more than 256 codes";
    const std::string_view text(reinterpret_cast<const char*>(file.data()), file.size());
    if (HasOverlongPngChunk(text))
        return "the PNG file ends within a chunk";
    if (IsPnm(text) && HasOverlongPnmNumber(text))
        return "a number in the header of the PNM file is too long";
    if (IsDeepPnm(file, size))
        return "PNM files of 16 bits per channel cannot be read; use PNG instead";
    if (ClaimsTooManyPixels(file.data(), size))
        return "the file is too short for the size that it states";
    return {};
}

// The decoder's reason, which can be missing and can quote bytes of the file.
std::string FailureReason() {
    const char* const reason = stbi_failure_reason();
    std::string text = reason ? reason : "";
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c < ' ' || c > '~'; }, '?');
    return text.empty() ? "the file is damaged" : text;
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
    image.errorText = Objection(file, size);
    if (!image.errorText.empty())
        return image;
    int width = 0, height = 0, channels = 0;
    if (IsRadiance(file)) {
        image.depth = 32;
        image.pixels.reset(stbi_loadf_from_memory(file.data(), size, &width, &height, &channels, s_Channels));
    } else {
        image.depth = 8;
        image.pixels.reset(stbi_load_from_memory(file.data(), size, &width, &height, &channels, s_Channels));
    }
    if (!image.pixels) {
        image.errorText = FailureReason();
        return image;
    }
    if (width <= 0 || height <= 0) {
        image.errorText = "the picture has no pixels";
        image.pixels.reset();
        return image;
    }
    image.width = static_cast<unsigned>(width);
    image.height = static_cast<unsigned>(height);
    return image;
}
