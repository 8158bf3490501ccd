#include "gpu/Surface.h"

#include <gtest/gtest.h>

namespace {

TEST(SurfaceTest, MemoryOfACallerTakesPrecedenceOverTheCopyUntilItIsDropped) {
    std::vector<unsigned char> copied(2 * 12, 1), inPlace(2 * 12, 2);
    Surface surface;
    surface.grabPixels(inPlace.data(), 2, 2, 8, 12, false, false);
    surface.grabPixels(copied.data(), 2, 2, 8, 12, true, false);
    copied[23] = 9;
    EXPECT_EQ(surface.pixels(), inPlace.data());
    surface.grabPixels(nullptr, 2, 2, 8, 12, false, false);
    ASSERT_NE(surface.pixels(), nullptr);
    EXPECT_EQ(surface.pixels()[23], 1) << "the surface owns a copy";
    surface.init(4, 4, 8, false);
    EXPECT_EQ(surface.pixels(), nullptr) << "the copy is too small for the new size";
}

} // namespace
