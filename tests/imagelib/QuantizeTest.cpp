#include "imagelib/Quantize.h"
#include "imagelib/Dither.h"
#include "imagelib/Settings.h"
#include "tests/imagelib/Pictures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

using namespace ImageLib;

namespace {

// Leaves the library's settings as they were found.
class QuantizeTest : public testing::Test {
protected:
    QuantizeTest() : m_Path(CurrentVectorPath()) {}
    ~QuantizeTest() override {
        SetVectorPath(m_Path);
        SetThreadCount(0);
    }

private:
    VectorPath m_Path;
};

struct Call {
    unsigned selector;
    int mode;
    float threshold;
    bool serpentine;
};

// Runs the model once and every vector path, each against it.
void CompareWithModel(Pictures::Kind kind, int width, int height, const Call& call) {
    const Model::Picture picture = Pictures::Make(kind, width, height);
    Model::Picture expected = picture;
    Model::Quantize(expected, call.selector, call.mode, call.threshold, call.serpentine);
    for (const VectorPath path : SupportedPaths()) {
        ASSERT_TRUE(SetVectorPath(path));
        Surface<Pixel32> surface = Pictures::ToSurface(picture);
        Quantize(surface, call.selector, static_cast<DitheringMode>(call.mode), call.threshold,
                 call.serpentine);
        ASSERT_EQ(Pictures::Difference(surface, expected), "")
            << PathName(path) << ' ' << Pictures::Name(kind) << ' ' << width << 'x' << height << " selector "
            << call.selector << " mode " << call.mode << " threshold " << call.threshold << " serpentine "
            << call.serpentine;
    }
}

void CompareAllSelectorsAndModes(Pictures::Kind kind, int width, int height) {
    for (unsigned selector = 0; selector <= 22; ++selector)
        for (int mode = -1; mode <= 15; ++mode)
            for (const bool serpentine : {false, true})
                ASSERT_NO_FATAL_FAILURE(
                    CompareWithModel(kind, width, height, {selector, mode, 0.5f, serpentine}));
}

TEST_F(QuantizeTest, EverySelectorAndModeEqualsTheModelOnNarrowPictures) {
    for (const Pictures::Kind kind : Pictures::kAll) {
        ASSERT_NO_FATAL_FAILURE(CompareAllSelectorsAndModes(kind, 1, 1));
        ASSERT_NO_FATAL_FAILURE(CompareAllSelectorsAndModes(kind, 1, 37));
        ASSERT_NO_FATAL_FAILURE(CompareAllSelectorsAndModes(kind, 37, 1));
        ASSERT_NO_FATAL_FAILURE(CompareAllSelectorsAndModes(kind, 7, 5));
    }
}

TEST_F(QuantizeTest, EverySelectorAndModeEqualsTheModelOnAPhoto) {
    CompareAllSelectorsAndModes(Pictures::Kind::Photo, 64, 33);
}

TEST_F(QuantizeTest, EverySelectorAndModeEqualsTheModelOnValuesBeyondOne) {
    CompareAllSelectorsAndModes(Pictures::Kind::Wild, 64, 33);
}

TEST_F(QuantizeTest, EverySelectorAndModeEqualsTheModelOnTies) {
    CompareAllSelectorsAndModes(Pictures::Kind::Ties, 64, 33);
}

TEST_F(QuantizeTest, EverySelectorAndModeEqualsTheModelFarFromAllColours) {
    CompareAllSelectorsAndModes(Pictures::Kind::Distant, 64, 33);
}

TEST_F(QuantizeTest, EverySelectorAndModeEqualsTheModelOnNanAndInfinity) {
    CompareAllSelectorsAndModes(Pictures::Kind::Hostile, 64, 33);
}

TEST_F(QuantizeTest, OrderedStrengthMayBeAnyNumber) {
    for (const float strength : {-1.0f, 0.0f, 0.03f, 3.0f, 100.0f, 1e30f, INFINITY, NAN})
        for (const unsigned selector : {1u, 4u, 7u, 13u})
            for (const int mode : {12, 14})
                ASSERT_NO_FATAL_FAILURE(
                    CompareWithModel(Pictures::Kind::Photo, 33, 9, {selector, mode, strength, false}));
}

// Wide pictures with short palettes are diffused with one lane a row, in a serpentine from choice to choice.
TEST_F(QuantizeTest, WidePicturesDiffuseAsTheModelDoes) {
    for (const Pictures::Kind kind : Pictures::kAll)
        for (const unsigned selector : {2u, 3u, 9u, 13u, 14u})
            for (int mode = 2; mode <= 10; ++mode)
                for (const int height : {4, 37})
                    for (const bool serpentine : {false, true})
                        ASSERT_NO_FATAL_FAILURE(
                            CompareWithModel(kind, 501 + mode, height, {selector, mode, 0.5f, serpentine}));
}

// The octree's large pictures take a shorter way to the leaves, and mappings are shared out to threads.
TEST_F(QuantizeTest, LargePicturesOnSeveralThreadsEqualTheModel) {
    SetThreadCount(3);
    for (const unsigned selector : {1u, 2u, 5u, 7u, 17u})
        for (const int mode : {0, 2, 14})
            ASSERT_NO_FATAL_FAILURE(
                CompareWithModel(Pictures::Kind::Photo, 403, 301, {selector, mode, 0.2f, false}));
}

// A picture of few colours leaves octree slots at (0, 0, 0, 0), which win near transparent black.
TEST_F(QuantizeTest, EmptyOctreeSlotsTakePartInTheSearch) {
    Surface<Pixel32> surface(2, 1);
    surface.Row(0)[0] = {0.1f, 0.0f, 0.0f, 0.0f};
    surface.Row(0)[1] = {1.0f, 1.0f, 1.0f, 1.0f};
    Quantize(surface, 2, DitheringMode::None, 0, false);
    EXPECT_EQ(surface.Row(0)[0], (Pixel32{0, 0, 0, 0}));
    EXPECT_EQ(surface.Row(0)[1], Pixel32::one);

    // The same beside more opaque colours than are tried one by one.
    for (const int mode : {0, 2, 14}) {
        Model::Picture picture{40, 3, {}};
        for (int i = 0; i < 120; ++i)
            picture.pixels.push_back({static_cast<float>(i % 7) / 6, static_cast<float>(i % 5) / 40,
                                      static_cast<float>(i % 8) / 50, static_cast<float>(i % 3) / 60});
        Model::Picture expected = picture;
        Model::Quantize(expected, 7, mode, 0.1f, false);
        for (const VectorPath path : SupportedPaths()) {
            SetVectorPath(path);
            Surface<Pixel32> mapped = Pictures::ToSurface(picture);
            Quantize(mapped, 7, static_cast<DitheringMode>(mode), 0.1f, false);
            EXPECT_EQ(Pictures::Difference(mapped, expected), "") << PathName(path) << " mode " << mode;
        }
    }
}

TEST_F(QuantizeTest, BitmapThresholdIsStrict) {
    Surface<Pixel32> surface(2, 1);
    surface.Row(0)[0] = {0.3f, 0.5f, 1.0f, 1.0f};
    surface.Row(0)[1] = {0.3f, 0.50001f, 0.0f, 0.0f};
    Quantize(surface, 1, DitheringMode::None, 0.5f, false);
    EXPECT_EQ(surface.Row(0)[0], (Pixel32{1, 0, 0, 0}));
    EXPECT_EQ(surface.Row(0)[1], (Pixel32{1, 1, 1, 1}));
}

// 0.75 in the bitmap at threshold 0.5 becomes 1 with an error of -0.25, of which 5/16 go down each time:
// 0.75 - 0.078125 = 0.671875 -> error -0.328125, 0.75 - 0.1025390625 -> 0.6474..., all above 0.5; with 0.55
// the second pixel falls to 0.55 - 0.140625 = 0.409375 and turns black.
TEST_F(QuantizeTest, FloydSteinbergInOneColumnSendsFiveSixteenthsDown) {
    Surface<Pixel32> surface(1, 2);
    surface.Row(0)[0] = surface.Row(1)[0] = {1, 0.55f, 0, 0};
    Quantize(surface, 1, DitheringMode::FloydSteinberg, 0.5f, false);
    EXPECT_EQ(surface.Row(0)[0], Pixel32::one);
    EXPECT_EQ(surface.Row(1)[0], Pixel32::alpha_zero);
}

// Rows with gaps between them, in memory that the surface does not own.
TEST_F(QuantizeTest, RowStridesAreHonouredAndGapsLeftAlone) {
    const Model::Picture picture = Pictures::Make(Pictures::Kind::Photo, 19, 11);
    const Pixel32 gap{-7, -7, -7, -7};
    for (const int mode : {0, 2, 13}) {
        for (const unsigned selector : {1u, 7u, 13u}) {
            Model::Picture expected = picture;
            Model::Quantize(expected, selector, mode, 0.3f, true);
            std::vector<Pixel32> memory(24 * 11, gap);
            Surface<Pixel32> surface(19, 11, 24 * sizeof(Pixel32), memory.data());
            const Surface<Pixel32> tight = Pictures::ToSurface(picture);
            for (unsigned y = 0; y < 11; ++y)
                std::copy(tight.Row(y), tight.Row(y) + 19, surface.Row(y));
            Quantize(surface, selector, static_cast<DitheringMode>(mode), 0.3f, true);
            EXPECT_EQ(Pictures::Difference(surface, expected), "") << selector << ' ' << mode;
            for (unsigned y = 0; y < 11; ++y)
                for (unsigned x = 19; x < 24; ++x)
                    EXPECT_EQ(memory[y * 24 + x], gap);
        }
    }
}

// A caller's own palette may be anything: too long to try all at once, not opaque, far away.
TEST_F(QuantizeTest, ForeignPalettesAndKernelsEqualTheModel) {
    const Model::Picture picture = Pictures::Make(Pictures::Kind::Wild, 21, 9);
    Model::Palette palette;
    std::vector<Pixel32> colours;
    for (int i = 0; i < 40; ++i) {
        const float v = static_cast<float>(i * 37 % 40) / 20.0f;
        palette.push_back({v / 2, v, 1 - v, 2 * v});
        colours.push_back({v / 2, v, 1 - v, 2 * v});
    }
    const ColourSet set{colours.data(), 40, false, 0};
    const Model::Matrix matrix{3, 1, {0, 1, 0.5f}};
    Pixel32 weights[3] = {{0, 0, 0, 0}, {1, 1, 1, 1}, {0.5f, 0.5f, 0.5f, 0.5f}};
    const Surface<Pixel32> kernel(3, 1, sizeof weights, weights);
    Model::Picture mapped = picture, diffused = picture;
    Model::MapNearest(mapped, palette);
    Model::Diffuse(diffused, matrix, palette, true);
    for (const VectorPath path : SupportedPaths()) {
        SetVectorPath(path);
        Surface<Pixel32> surface = Pictures::ToSurface(picture);
        Quantizers::Process(surface, set);
        EXPECT_EQ(Pictures::Difference(surface, mapped), "") << PathName(path);
        surface = Pictures::ToSurface(picture);
        Dither::ErrorDiffusion(surface, kernel, set, true);
        EXPECT_EQ(Pictures::Difference(surface, diffused), "") << PathName(path);
    }
}

// Pixels just inside and just outside 0..1, where candidate lists end.
TEST_F(QuantizeTest, LongPalettesAreExactAtTheEndsOfTheirLists) {
    const auto spread = [](int i, int step) { return static_cast<float>(i * step % 10007) / 10007.0f; };
    Model::Palette palette;
    std::vector<Pixel32> colours;
    for (int i = 0; i < 60; ++i) {
        palette.push_back({1, spread(i, 571), spread(i, 3119), spread(i, 7019)});
        colours.push_back({1, palette.back().r, palette.back().g, palette.back().b});
    }
    Model::Picture picture{400, 250, {}};
    for (int i = 0; i < 100000; ++i) {
        Model::Colour pixel{1, spread(i, 83), spread(i, 4191), spread(i, 9071)};
        (i % 3 == 0   ? pixel.r
         : i % 3 == 1 ? pixel.g
                      : pixel.b) = (i % 2 ? -0.045f : 0.995f) + spread(i, 6131) / 20;
        picture.pixels.push_back(pixel);
    }
    Model::Picture expected = picture;
    Model::MapNearest(expected, palette);
    for (const VectorPath path : SupportedPaths()) {
        SetVectorPath(path);
        Surface<Pixel32> surface = Pictures::ToSurface(picture);
        Quantizers::Process(surface, ColourSet{colours.data(), 60, false, 0});
        EXPECT_EQ(Pictures::Difference(surface, expected), "") << PathName(path);
    }
}

TEST_F(QuantizeTest, EmptySurfacesAreLeftAlone) {
    Surface<Pixel32> none, noRows(5, 0), noColumns(0, 5);
    for (Surface<Pixel32>* surface : {&none, &noRows, &noColumns})
        for (unsigned selector = 0; selector < 23; ++selector)
            for (const int mode : {0, 2, 13})
                Quantize(*surface, selector, static_cast<DitheringMode>(mode), 0.5f, true);
    EXPECT_EQ(noRows.Width(), 5u);
}

} // namespace
