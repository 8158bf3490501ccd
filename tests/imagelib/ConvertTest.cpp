#include "imagelib/Convert.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>
#include <vector>

using namespace ImageLib;

namespace {

// Converts a row of pixels with every possible channel value to floats and back.
template <class Channel>
void RoundTrip(float scale) {
    constexpr std::size_t values = std::size_t{1} << 8 * sizeof(Channel);
    std::vector<Channel> channels(values);
    for (std::size_t i = 0; i < values; ++i)
        channels[i] = static_cast<Channel>(i);
    const std::size_t bytes = values * sizeof(Channel);
    Surface<Pixel32> surface;
    ASSERT_TRUE(LoadSurface(channels.data(), bytes, values / 4, 1, 8 * sizeof(Channel), bytes, surface));
    for (std::size_t i = 0; i < values; i += 4) {
        const Pixel32& pixel = surface.Row(0)[i / 4];
        ASSERT_EQ(pixel.alpha, static_cast<float>(i) / scale);
        ASSERT_EQ(pixel.red, static_cast<float>(i + 1) / scale);
        ASSERT_EQ(pixel.green, static_cast<float>(i + 2) / scale);
        ASSERT_EQ(pixel.blue, static_cast<float>(i + 3) / scale);
    }
    std::vector<Channel> back(values);
    ASSERT_TRUE(StoreSurface(surface, back.data(), bytes, 8 * sizeof(Channel), bytes));
    EXPECT_EQ(back, channels);
}

TEST(ConvertTest, EveryByteAndEveryWordSurvivesTheRoundTrip) {
    RoundTrip<std::uint8_t>(255.0f);
    RoundTrip<std::uint16_t>(65535.0f);
}

template <class Channel>
Channel StoreOne(float value) {
    Pixel32 pixel{0, value, 0, 0};
    const Surface<Pixel32> surface(1, 1, sizeof pixel, &pixel);
    Channel channels[4];
    EXPECT_TRUE(StoreSurface(surface, channels, sizeof channels, 8 * sizeof(Channel), sizeof channels));
    return channels[1];
}

TEST(ConvertTest, StoringRoundsTiesToEvenAndClamps) {
    EXPECT_EQ(StoreOne<std::uint8_t>(0.5f), 128);    // 127.5
    EXPECT_EQ(StoreOne<std::uint8_t>(0.1f), 26);     // 25.5 in single precision
    EXPECT_EQ(StoreOne<std::uint8_t>(0.7f), 178);    // 178.5 in single precision
    EXPECT_EQ(StoreOne<std::uint16_t>(0.5f), 32768); // 32767.5
    EXPECT_EQ(StoreOne<std::uint8_t>(-0.2f), 0);
    EXPECT_EQ(StoreOne<std::uint8_t>(1.01f), 255);
    EXPECT_EQ(StoreOne<std::uint16_t>(INFINITY), 65535);
    EXPECT_EQ(StoreOne<std::uint16_t>(-INFINITY), 0);
    EXPECT_EQ(StoreOne<std::uint8_t>(NAN), 0);
    for (int i = 0; i < 510; ++i) {
        const float close = std::nextafter(static_cast<float>(i) / 510.0f, i % 2 ? 2.0f : -2.0f);
        for (const float value : {close, static_cast<float>(i) / 510.0f})
            EXPECT_EQ(StoreOne<std::uint8_t>(value), std::nearbyint(value * 255.0f)) << value;
    }
}

TEST(ConvertTest, PixelsForTheOctreeAreInTheOrderRedGreenBlueAlpha) {
    Pixel32 pixels[2] = {{1.0f, 0.1f, 0.5f, -1.0f}, {0.0f, NAN, 2.0f, 1.0f}};
    const Surface<Pixel32> surface(1, 2, sizeof(Pixel32), pixels);
    std::uint8_t bytes[8];
    StoreRGBA8(surface, bytes);
    const std::uint8_t expected[8] = {26, 128, 0, 255, 0, 255, 255, 0};
    EXPECT_EQ(std::memcmp(bytes, expected, 8), 0);
}

TEST(ConvertTest, ImpossibleSizesStridesAndDepthsAreRefused) {
    struct Row {
        const char* name;
        std::size_t bytes;
        unsigned width, height, depth;
        std::size_t stride;
    };
    const Row rows[] = {
        {"one byte short", 63, 4, 4, 8, 16},
        {"padded rows one byte short", 79, 4, 4, 8, 20},
        {"stride shorter than a row", 64, 4, 4, 8, 15},
        {"no width", 64, 0, 4, 8, 16},
        {"no height", 64, 4, 0, 8, 16},
        {"unknown depth", 64, 4, 4, 10, 16},
        {"depth 0", 64, 4, 4, 0, 16},
        {"product beyond 64 bits", 64, 4, 0xFFFFFFFFu, 8, std::size_t{1} << 62},
        {"negative stride", 64, 4, 4, 8, static_cast<std::size_t>(-16)},
    };
    std::vector<unsigned char> memory(64, 1);
    for (const Row& row : rows) {
        Surface<Pixel32> surface(1, 1);
        const Pixel32* const before = surface.Row(0);
        EXPECT_FALSE(
            LoadSurface(memory.data(), row.bytes, row.width, row.height, row.depth, row.stride, surface))
            << row.name;
        EXPECT_EQ(surface.Row(0), before) << row.name;
        const Surface<Pixel32> source(row.width ? row.width : 0, row.height < 100 ? row.height : 5);
        EXPECT_FALSE(StoreSurface(source, memory.data(), row.bytes, row.depth, row.stride)) << row.name;
    }
    EXPECT_EQ(memory, std::vector<unsigned char>(64, 1));
    EXPECT_TRUE(IsConvertibleDepth(16));
    EXPECT_FALSE(IsConvertibleDepth(24));
}

// The memory blocks have exactly the stated size and odd addresses, so that a sanitizer detects any access
// beyond them.
TEST(ConvertTest, RandomSizesAndStridesStayInsideTheirMemory) {
    std::mt19937 random(4);
    for (int round = 0; round < 2000; ++round) {
        const auto upTo = [&](unsigned limit) { return static_cast<unsigned>(random() % limit); };
        const unsigned depth = 8u << upTo(3), width = upTo(40), height = upTo(12);
        const std::size_t stride = random() % 3 ? width * depth / 2 + random() % 9 : random() % 700;
        const std::size_t bytes = random() % 4 ? height * stride : random() % 8000;
        const std::size_t offset = random() % 4;
        std::vector<unsigned char> memory(offset + bytes);
        for (unsigned char& byte : memory)
            byte = static_cast<unsigned char>(random());
        const bool fits = width && height && stride >= width * depth / 2 && height * stride <= bytes;
        Surface<Pixel32> surface;
        ASSERT_EQ(LoadSurface(memory.data() + offset, bytes, width, height, depth, stride, surface), fits);
        if (!fits)
            continue;
        std::vector<unsigned char> back = memory;
        for (unsigned y = 0; y < height; ++y)
            std::fill_n(back.begin() + static_cast<std::ptrdiff_t>(offset + y * stride), width * depth / 2,
                        static_cast<unsigned char>(0));
        ASSERT_TRUE(StoreSurface(surface, back.data() + offset, bytes, depth, stride));
        ASSERT_EQ(back, memory) << width << 'x' << height << " stride " << stride << " depth " << depth;
    }
}

} // namespace
