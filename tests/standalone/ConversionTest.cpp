#include "standalone/images/Conversion.h"

#include <cstring>
#include <gtest/gtest.h>
#include <limits>

namespace {

using namespace fxhost;

template <class T>
FilePixels File(unsigned width, unsigned height, unsigned channels, int alpha, std::vector<T> values) {
    FilePixels file{width, height, sizeof(T) * 8, channels, alpha, {}};
    file.bytes.resize(values.size() * sizeof(T));
    std::memcpy(file.bytes.data(), values.data(), file.bytes.size());
    return file;
}

template <class T>
std::vector<T> Values(const std::vector<std::uint8_t>& bytes) {
    std::vector<T> values(bytes.size() / sizeof(T));
    std::memcpy(values.data(), bytes.data(), bytes.size());
    return values;
}

using Bytes8 = std::vector<std::uint8_t>;
using Words = std::vector<std::uint16_t>;
using Floats = std::vector<float>;

TEST(ConversionTest, ChannelsOfEveryLayoutBecomeAlphaRedGreenBlue) {
    const struct {
        const char* name;
        FilePixels file;
        Bytes8 argb;
    } rows[] = {
        {"grey", File<std::uint8_t>(2, 1, 1, -1, {7, 200}), {255, 7, 7, 7, 255, 200, 200, 200}},
        {"grey and alpha", File<std::uint8_t>(1, 1, 2, 1, {7, 9}), {9, 7, 7, 7}},
        {"RGB", File<std::uint8_t>(1, 2, 3, -1, {1, 2, 3, 4, 5, 6}), {255, 1, 2, 3, 255, 4, 5, 6}},
        {"RGBA, straight", File<std::uint8_t>(1, 1, 4, 3, {255, 128, 1, 0}), {0, 255, 128, 1}},
        {"five channels", File<std::uint8_t>(1, 1, 5, 3, {1, 2, 3, 4, 5}), {4, 1, 2, 3}},
        {"alpha first", File<std::uint8_t>(1, 1, 4, 0, {4, 1, 2, 3}), {4, 1, 2, 3}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(ToPicture(row.file, 8).bytes, row.argb) << row.name;
}

TEST(ConversionTest, SixteenBitsRunTo32768InTheHostAndComeBack) {
    const auto file = File<std::uint16_t>(1, 1, 4, 3, {0, 65535, 32768, 2});
    const Picture picture = ToPicture(file, 16);
    // 2 * 32768 / 65535 = 1.00002, 32768 * 32768 / 65535 = 16384.25
    EXPECT_EQ(Values<std::uint16_t>(picture.bytes), (Words{1, 0, 32768, 16384}));
    // 16384 * 65535 / 32768 = 32767.5, rounded up
    EXPECT_EQ(Values<std::uint16_t>(ToFilePixels(picture, true).bytes), (Words{0, 65535, 32768, 2}));
}

TEST(ConversionTest, EveryHostLevelSurvivesTheRoundTripThroughAFile) {
    Picture host(32769, 1, 16);
    auto* values = reinterpret_cast<std::uint16_t*>(host.bytes.data());
    for (unsigned x = 0; x < host.width; ++x)
        for (unsigned channel = 0; channel < 4; ++channel)
            values[x * 4 + channel] = static_cast<std::uint16_t>((x + channel * 11) % 32769);
    EXPECT_EQ(ToPicture(ToFilePixels(host, true), 16).bytes, host.bytes);
}

TEST(ConversionTest, DepthsChangeByRoundingAndClamping) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const auto floats = File<float>(1, 2, 4, 3, {-0.5f, 0.5f, 2.0f, 1.0f, nan, 0.0f, 0.25f, 0.1f});
    // 0.5 * 255 = 127.5, 0.25 * 255 = 63.75, 0.1 * 255 = 25.5 and a little
    EXPECT_EQ(ToPicture(floats, 8).bytes, (Bytes8{255, 0, 128, 255, 26, 0, 0, 64}));
    EXPECT_EQ(Values<std::uint16_t>(ToPicture(floats, 16).bytes),
              (Words{32768, 0, 16384, 32768, 3277, 0, 0, 8192}));
    const auto asFloats = Values<float>(ToPicture(floats, 32).bytes);
    EXPECT_EQ(asFloats[1], -0.5f);
    EXPECT_EQ(asFloats[3], 2.0f);

    const auto bytes = File<std::uint8_t>(1, 1, 4, 3, {0, 51, 255, 128});
    EXPECT_EQ(Values<float>(ToPicture(bytes, 32).bytes), (Floats{128 / 255.0f, 0.0f, 0.2f, 1.0f}));
    // 128 / 255 * 32768 = 16448.25, 51 / 255 * 32768 = 6553.6
    EXPECT_EQ(Values<std::uint16_t>(ToPicture(bytes, 16).bytes), (Words{16448, 0, 6554, 32768}));
}

TEST(ConversionTest, AlphaIsLeftOutWhereTheFormatHasNone) {
    Picture host(1, 1, 8);
    host.bytes = {0, 10, 20, 30};
    const FilePixels file = ToFilePixels(host, false);
    EXPECT_EQ(file.channels, 3u);
    EXPECT_EQ(file.bytes, (Bytes8{10, 20, 30}));
}

} // namespace
