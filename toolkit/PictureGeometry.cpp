#include "toolkit/PictureGeometry.h"

#include <algorithm>
#include <cstring>

namespace fxhost {

namespace {

std::size_t PixelBytes(const FilePixels& pixels) {
    return std::size_t{pixels.channels} * pixels.depth / 8;
}

FilePixels Like(const FilePixels& pixels, unsigned width, unsigned height) {
    FilePixels result{width, height, pixels.depth, pixels.channels, pixels.alpha, {}};
    result.bytes.resize(std::size_t{width} * height * PixelBytes(pixels));
    return result;
}

} // namespace

bool ExchangesAxes(int orientation) {
    return orientation >= 5 && orientation <= 8;
}

FilePixels TurnedUpright(FilePixels pixels, int orientation) {
    if (orientation < 2 || orientation > 8)
        return pixels;
    const bool exchanges = ExchangesAxes(orientation);
    const bool fromRight = orientation == 2 || orientation == 3 || orientation == 7 || orientation == 8;
    const bool fromBottom = orientation == 3 || orientation == 4 || orientation == 6 || orientation == 7;
    FilePixels result =
        exchanges ? Like(pixels, pixels.height, pixels.width) : Like(pixels, pixels.width, pixels.height);
    const std::size_t size = PixelBytes(pixels);
    std::uint8_t* to = result.bytes.data();
    for (unsigned y = 0; y < result.height; ++y)
        for (unsigned x = 0; x < result.width; ++x, to += size) {
            unsigned column = exchanges ? y : x, row = exchanges ? x : y; // of the file
            column = fromRight ? pixels.width - 1 - column : column;
            row = fromBottom ? pixels.height - 1 - row : row;
            std::memcpy(to, &pixels.bytes[(std::size_t{row} * pixels.width + column) * size], size);
        }
    return result;
}

FilePixels CutWindow(const FilePixels& pixels, int left, int top, unsigned width, unsigned height) {
    FilePixels result = Like(pixels, width, height);
    const std::size_t size = PixelBytes(pixels);
    const long first = std::max(0, -left), end = std::min<long>(width, long{pixels.width} - left);
    for (long y = 0; y < long{height} && first < end; ++y) {
        const long row = y + top;
        if (row < 0 || row >= long{pixels.height})
            continue;
        std::memcpy(&result.bytes[static_cast<std::size_t>(y * long{width} + first) * size],
                    &pixels.bytes[static_cast<std::size_t>(row * long{pixels.width} + first + left) * size],
                    static_cast<std::size_t>(end - first) * size);
    }
    return result;
}

FilePixels SelectedChannels(const FilePixels& pixels, const std::vector<int>& channels, int alpha) {
    FilePixels result{
        pixels.width, pixels.height, pixels.depth, static_cast<unsigned>(channels.size()), alpha, {}};
    const std::size_t count = std::size_t{pixels.width} * pixels.height, bytes = pixels.depth / 8;
    result.bytes.resize(count * channels.size() * bytes);
    std::uint8_t* to = result.bytes.data();
    for (std::size_t i = 0; i < count; ++i)
        for (const int channel : channels) {
            std::memcpy(to, &pixels.bytes[(i * pixels.channels + static_cast<std::size_t>(channel)) * bytes],
                        bytes);
            to += bytes;
        }
    return result;
}

} // namespace fxhost
