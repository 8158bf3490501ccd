#include "toolkit/PictureConversion.h"

#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <numeric>

namespace {

using namespace fxhost;

using Bytes = std::vector<std::uint8_t>;
using Words = std::vector<std::uint16_t>;
using Floats = std::vector<float>;

template <class T>
Bytes Raw(const std::vector<T>& values) {
    Bytes bytes(values.size() * sizeof(T));
    std::memcpy(bytes.data(), values.data(), bytes.size());
    return bytes;
}

template <class T>
FilePixels File(unsigned width, unsigned height, unsigned channels, int alpha, const std::vector<T>& values) {
    return {width, height, sizeof(T) * 8, channels, alpha, Raw(values)};
}

TEST(PictureConversionTest, FilePixelsConvertToArgbAtTheRequestedDepth) {
    const auto words = File(1, 1, 4, 3, Words{0, 65535, 32768, 2});
    const auto bytes = File(1, 1, 4, 3, Bytes{0, 51, 255, 128});
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const auto floats = File(1, 2, 4, 3, Floats{-0.5f, 0.5f, 2.0f, 1.0f, nan, 0.0f, 0.25f, 0.1f});
    const struct {
        const char* name;
        FilePixels file;
        unsigned depth;
        Bytes wanted;
    } rows[] = {
        {"grey", File(2, 1, 1, -1, Bytes{7, 200}), 8, {255, 7, 7, 7, 255, 200, 200, 200}},
        {"grey and alpha", File(1, 1, 2, 1, Bytes{7, 9}), 8, {9, 7, 7, 7}},
        {"RGB", File(1, 2, 3, -1, Bytes{1, 2, 3, 4, 5, 6}), 8, {255, 1, 2, 3, 255, 4, 5, 6}},
        {"RGBA, straight", File(1, 1, 4, 3, Bytes{255, 128, 1, 0}), 8, {0, 255, 128, 1}},
        {"five channels, alpha first", File(1, 1, 5, 0, Bytes{4, 1, 2, 3, 5}), 8, {4, 1, 2, 3}},
        // 2 * 32768 / 65535 = 1.00002, 32768 * 32768 / 65535 = 16384.25
        {"16 bits in the host's range", words, 16, Raw(Words{1, 0, 32768, 16384})},
        // 0.5 * 255 = 127.5, 0.25 * 255 = 63.75, 0.1 * 255 = 25.5 + rounding error
        {"floats, rounded and clamped", floats, 8, {255, 0, 128, 255, 26, 0, 0, 64}},
        {"floats to 16 bits", floats, 16, Raw(Words{32768, 0, 16384, 32768, 3277, 0, 0, 8192})},
        {"floats", File(1, 1, 4, 3, Floats{-0.5f, 2, 0, 1}), 32, Raw(Floats{1, -0.5f, 2, 0})},
        {"bytes to floats", bytes, 32, Raw(Floats{128 / 255.0f, 0.0f, 0.2f, 1.0f})},
        // 128 / 255 * 32768 = 16448.25, 51 / 255 * 32768 = 6553.6
        {"bytes to 16 bits", bytes, 16, Raw(Words{16448, 0, 6554, 32768})},
    };
    for (const auto& row : rows)
        EXPECT_EQ(ToPicture(row.file, row.depth).bytes, row.wanted) << row.name;
}

TEST(PictureConversionTest, PicturesConvertToRgbaOrRgbAndSixteenBitsRoundTrip) {
    Picture host(1, 1, 16);
    host.bytes = Raw(Words{1, 0, 32768, 16384});
    // 16384 * 65535 / 32768 = 32767.5, rounded up
    EXPECT_EQ(ToFilePixels(host, true).bytes, Raw(Words{0, 65535, 32768, 2}));
    const FilePixels opaque = ToFilePixels(host, false);
    EXPECT_EQ(opaque.channels, 3u);
    EXPECT_EQ(opaque.bytes, Raw(Words{0, 65535, 32768}));
    Words levels(32768);
    std::iota(levels.begin(), levels.end(), 0);
    host = Picture(8192, 1, 16);
    host.bytes = Raw(levels);
    EXPECT_EQ(ToPicture(ToFilePixels(host, true), 16).bytes, host.bytes);
}

} // namespace
