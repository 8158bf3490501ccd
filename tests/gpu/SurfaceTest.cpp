#include "gpu/Surface.h"

#include <gtest/gtest.h>
#include <vector>

namespace {

TEST(SurfaceTest, InitSetsTightRowsAndAllocatesNothing) {
    Surface surface;
    const struct { unsigned depth, stride; } rows[] = {{8, 28}, {15, 56}, {16, 56}, {32, 112}};
    for (const auto& row : rows) {
        EXPECT_TRUE(surface.init(7, 3, row.depth, true));
        EXPECT_EQ(surface.stride(), row.stride) << row.depth;
        EXPECT_EQ(surface.depth(), row.depth);
        EXPECT_TRUE(surface.flag());
        EXPECT_EQ(surface.pixels(), nullptr);
    }
}

TEST(SurfaceTest, CallersMemoryWinsOverCopiesUntilItIsForgotten) {
    std::vector<unsigned char> first(2 * 12, 1), second(2 * 12, 2), third(2 * 12, 3);
    Surface surface;
    surface.grabPixels(first.data(), 2, 2, 8, 12, true, false);
    ASSERT_NE(surface.pixels(), nullptr);
    EXPECT_NE(surface.pixels(), first.data());
    EXPECT_EQ(surface.stride(), 12u);
    first[23] = 9;
    EXPECT_EQ(surface.pixels()[23], 1) << "the copy stands on its own";

    surface.grabPixels(second.data(), 2, 2, 8, 12, false, false);
    EXPECT_EQ(surface.pixels(), second.data());
    surface.grabPixels(third.data(), 2, 2, 8, 12, true, false);
    EXPECT_EQ(surface.pixels(), second.data());
    surface.grabPixels(nullptr, 2, 2, 8, 12, false, false);
    ASSERT_NE(surface.pixels(), nullptr);
    EXPECT_EQ(surface.pixels()[0], 3);
}

TEST(SurfaceTest, ACopyTooSmallForTheSizeIsNotShown) {
    const std::vector<unsigned char> pixels(16, 5);
    Surface surface;
    surface.grabPixels(pixels.data(), 2, 2, 8, 8, true, false);
    surface.init(4, 4, 8, false);
    EXPECT_EQ(surface.pixels(), nullptr);
}

} // namespace
