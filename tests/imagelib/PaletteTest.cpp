#include "imagelib/Palette.h"
#include "imagelib/DitherKernels.h"
#include "tests/imagelib/reference/Reference.h"

#include <gtest/gtest.h>

#include <cmath>

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

TEST(PaletteTest, DuplicatesAndBrownAreKept) {
    EXPECT_EQ(GetPalette(s_AppleII)[5], GetPalette(s_AppleII)[10]);
    EXPECT_EQ(GetPalette(s_MSX)[0], GetPalette(s_MSX)[1]);
    EXPECT_EQ(GetPalette(s_EGA)[6], (Pixel32{1, 170 / 255.0f, 85 / 255.0f, 0})); // brown, not dark yellow
    for (int i = 1; i < 8; ++i)
        EXPECT_EQ(GetPalette(s_3bit)[i], GetPalette(s_4bit)[8 + i]);
}

TEST(SurfaceTest, WrappedPixelsOutliveTheSurface) {
    Pixel32 pixels[2] = {Pixel32::one, Pixel32::alpha_zero};
    {
        Surface<Pixel32> surface(1, 2, sizeof(Pixel32), pixels);
        EXPECT_FALSE(surface.OwnsPixels());
        surface.Row(1)[0].red = 0.5f;
    }
    EXPECT_EQ(pixels[1].red, 0.5f);
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

// With a sum of 1 all of the error is distributed. The kernels with a smaller sum lose some of it, which is
// intended.
TEST(DitherKernelsTest, WeightsSumToWhatTheShiftedRowsLeave) {
    struct Row {
        const char* name;
        const Surface<Pixel32>& kernel;
        double sum;
    };
    const Row rows[] = {
        {"Floyd-Steinberg", FloydSteinbergKernel, 16 / 16.0},
        {"Jarvis-Judice", JarvisJudiceKernel, 39 / 48.0},
        {"Stucki", StuckiKernel, 35 / 42.0},
        {"Atkinson", AtkinsonKernel, 6 / 8.0},
        {"Burkes", BurkesKernel, 26 / 32.0},
        {"Sierra", SierraKernel, 27 / 32.0},
        {"Sierra two-row", Sierra2Kernel, 13 / 16.0},
        {"Sierra lite", Sierra3Kernel, 4 / 4.0},
        {"Stevenson-Arce", StevensonArceKernel, 200 / 200.0},
        {"Bayer 3x3", Bayer3x3Kernel, 45 / 10.0},
    };
    for (const Row& row : rows) {
        double sum = 0;
        bool isMarker = row.kernel.Height() !=
                        row.kernel.Width(); // the square kernel is an ordered one, which has no marker
        for (unsigned y = 0; y < row.kernel.Height(); ++y) {
            for (unsigned x = 0; x < row.kernel.Width(); ++x) {
                const Pixel32& weight = row.kernel.Row(y)[x];
                EXPECT_EQ(weight, (Pixel32{weight.red, weight.red, weight.red, weight.red}));
                if (weight.red > 0 && isMarker)
                    isMarker = false;
                else
                    sum += weight.red;
            }
        }
        EXPECT_NEAR(sum, row.sum, 1e-6) << row.name;
    }
}

} // namespace
