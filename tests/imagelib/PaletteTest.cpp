#include "imagelib/Palette.h"
#include "tests/imagelib/reference/Reference.h"

#include <gtest/gtest.h>

using namespace ImageLib;

namespace {

HWPalette Number(unsigned value) {
    return static_cast<HWPalette>(value);
}

TEST(PaletteTest, EveryPaletteEqualsTheReferenceTable) {
    const unsigned lengths[] = {8, 16, 16, 16, 16, 4, 4, 4, 4, 4, 4, 16, 16};
    for (unsigned value = 1; value <= 13; ++value) {
        const Reference::Palette expected = Reference::FixedPalette(static_cast<int>(value));
        const Pixel32* const palette = GetPalette(Number(value));
        ASSERT_EQ(GetPaletteLen(Number(value)), lengths[value - 1]) << value;
        ASSERT_EQ(expected.size(), lengths[value - 1]) << value;
        for (unsigned i = 0; i < lengths[value - 1]; ++i)
            EXPECT_EQ(palette[i], (Pixel32{1, expected[i].r, expected[i].g, expected[i].b}))
                << value << ' ' << i;
    }
}

TEST(PaletteTest, ValuesOutsideOneToThirteenHaveNoPalette) {
    for (const unsigned value : {0u, 14u, 0xFFFFFFFFu}) {
        EXPECT_EQ(GetPalette(Number(value)), nullptr);
        EXPECT_EQ(GetPaletteLen(Number(value)), 0u);
    }
}

TEST(SurfaceTest, MovingASurfaceKeepsItsPixels) {
    Surface<Pixel32> first(3, 2);
    const Pixel32* const pixels = first.Row(0);
    Surface<Pixel32> second(std::move(first));
    EXPECT_EQ(second.Row(0), pixels);
    EXPECT_EQ(second.Stride(), 48u);
    Surface<Pixel32> third(1, 1);
    third = std::move(second);
    EXPECT_EQ(third.Row(0), pixels);
    EXPECT_TRUE(second.IsEmpty()); // NOLINT(bugprone-use-after-move)
}

} // namespace
