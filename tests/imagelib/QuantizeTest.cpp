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
    QuantizeTest() : m_Path(CurrentSimdPath()) {}
    ~QuantizeTest() override {
        SetSimdPath(m_Path);
        SetThreadCount(0);
    }

private:
    SimdPath m_Path;
};

struct Call {
    unsigned selector;
    int mode;
    float threshold;
    bool serpentine;
};

// Compares every SIMD path with the reference implementation, bit for bit.
void CompareWithReference(Pictures::Kind kind, int width, int height, const Call& call) {
    const Reference::Picture picture = Pictures::Make(kind, width, height);
    Reference::Picture expected = picture;
    Reference::Quantize(expected, call.selector, call.mode, call.threshold, call.serpentine);
    for (const SimdPath path : SupportedSimdPaths()) {
        ASSERT_TRUE(SetSimdPath(path));
        Surface<Pixel32> surface = Pictures::ToSurface(picture);
        Quantize(surface, call.selector, static_cast<DitheringMode>(call.mode), call.threshold,
                 call.serpentine);
        ASSERT_EQ(Pictures::Difference(surface, expected), "")
            << SimdPathName(path) << ' ' << Pictures::Name(kind) << ' ' << width << 'x' << height
            << " selector " << call.selector << " mode " << call.mode << " threshold " << call.threshold
            << " serpentine " << call.serpentine;
    }
}

TEST_F(QuantizeTest, EverySelectorAndModeEqualsTheReferenceOnPicturesOfEveryKind) {
    constexpr int sizes[][2] = {{1, 1}, {1, 37}, {37, 1}, {7, 5}, {64, 33}};
    for (const Pictures::Kind kind : Pictures::s_All)
        for (const auto [width, height] : sizes)
            for (unsigned selector = 0; selector <= 22; ++selector)
                for (int mode = -1; mode <= 15; ++mode)
                    for (const bool serpentine : {false, true})
                        ASSERT_NO_FATAL_FAILURE(
                            CompareWithReference(kind, width, height, {selector, mode, 0.5f, serpentine}));
}

TEST_F(QuantizeTest, OrderedStrengthMayBeAnyNumber) {
    for (const float strength : {-1.0f, 0.0f, 0.03f, 3.0f, 100.0f, 1e30f, INFINITY, NAN})
        for (const unsigned selector : {1u, 4u, 7u, 13u})
            for (const int mode : {12, 14})
                ASSERT_NO_FATAL_FAILURE(
                    CompareWithReference(Pictures::Kind::Photo, 33, 9, {selector, mode, strength, false}));
}

// Wide pictures with short palettes are diffused as a wavefront, or by a serial scan in a serpentine.
TEST_F(QuantizeTest, WidePicturesDiffuseLikeTheReference) {
    for (const Pictures::Kind kind : Pictures::s_All)
        for (const unsigned selector : {2u, 3u, 9u, 13u, 14u})
            for (int mode = 2; mode <= 10; ++mode)
                for (const int height : {4, 37})
                    for (const bool serpentine : {false, true})
                        ASSERT_NO_FATAL_FAILURE(CompareWithReference(kind, 501 + mode, height,
                                                                     {selector, mode, 0.5f, serpentine}));
}

// The octree counts large pictures with its leaf table, and mapping is distributed to threads.
TEST_F(QuantizeTest, LargePicturesOnSeveralThreadsEqualTheReference) {
    SetThreadCount(3);
    for (const unsigned selector : {1u, 2u, 5u, 7u, 17u})
        for (const int mode : {0, 2, 14})
            ASSERT_NO_FATAL_FAILURE(
                CompareWithReference(Pictures::Kind::Photo, 403, 301, {selector, mode, 0.2f, false}));
}

// With few colours, some octree slots are (0, 0, 0, 0), which is the nearest colour near transparent black.
TEST_F(QuantizeTest, EmptyOctreeSlotsTakePartInTheSearch) {
    Surface<Pixel32> surface(2, 1);
    surface.Row(0)[0] = {0.1f, 0.0f, 0.0f, 0.0f};
    surface.Row(0)[1] = {1.0f, 1.0f, 1.0f, 1.0f};
    Quantize(surface, 2, DitheringMode::None, 0, false);
    EXPECT_EQ(surface.Row(0)[0], (Pixel32{0, 0, 0, 0}));
    EXPECT_EQ(surface.Row(0)[1], Pixel32::one);

    // The same with so many opaque colours that a candidate grid is used.
    for (const int mode : {0, 2, 14}) {
        Reference::Picture picture{40, 3, {}};
        for (int i = 0; i < 120; ++i)
            picture.pixels.push_back({static_cast<float>(i % 7) / 6, static_cast<float>(i % 5) / 40,
                                      static_cast<float>(i % 8) / 50, static_cast<float>(i % 3) / 60});
        Reference::Picture expected = picture;
        Reference::Quantize(expected, 7, mode, 0.1f, false);
        for (const SimdPath path : SupportedSimdPaths()) {
            SetSimdPath(path);
            Surface<Pixel32> mapped = Pictures::ToSurface(picture);
            Quantize(mapped, 7, static_cast<DitheringMode>(mode), 0.1f, false);
            EXPECT_EQ(Pictures::Difference(mapped, expected), "") << SimdPathName(path) << " mode " << mode;
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

// 0.55 is above the threshold 0.5 and becomes 1, with an error of -0.45. The pixel below receives 5/16 of the
// error: 0.55 - 0.140625 = 0.409375, which becomes black.
TEST_F(QuantizeTest, FloydSteinbergInOneColumnSendsFiveSixteenthsDown) {
    Surface<Pixel32> surface(1, 2);
    surface.Row(0)[0] = surface.Row(1)[0] = {1, 0.55f, 0, 0};
    Quantize(surface, 1, DitheringMode::FloydSteinberg, 0.5f, false);
    EXPECT_EQ(surface.Row(0)[0], Pixel32::one);
    EXPECT_EQ(surface.Row(1)[0], Pixel32::alpha_zero);
}

// The rows have gaps between them, in memory that the surface does not own.
TEST_F(QuantizeTest, RowStridesAreHonouredAndGapsStayUnchanged) {
    const Reference::Picture picture = Pictures::Make(Pictures::Kind::Photo, 19, 11);
    const Pixel32 gap{-7, -7, -7, -7};
    for (const int mode : {0, 2, 13}) {
        for (const unsigned selector : {1u, 7u, 13u}) {
            Reference::Picture expected = picture;
            Reference::Quantize(expected, selector, mode, 0.3f, true);
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

// A caller's own palette may be too long for brute force, not opaque, and outside 0..1.
TEST_F(QuantizeTest, PalettesAndKernelsOfTheCallerEqualTheReference) {
    const Reference::Picture picture = Pictures::Make(Pictures::Kind::Wild, 21, 9);
    Reference::Palette palette;
    std::vector<Pixel32> colours;
    for (int i = 0; i < 40; ++i) {
        const float v = static_cast<float>(i * 37 % 40) / 20.0f;
        palette.push_back({v / 2, v, 1 - v, 2 * v});
        colours.push_back({v / 2, v, 1 - v, 2 * v});
    }
    const ColourSet set{colours.data(), 40, false, 0};
    const Reference::Matrix matrix{3, 1, {0, 1, 0.5f}};
    Pixel32 weights[3] = {{0, 0, 0, 0}, {1, 1, 1, 1}, {0.5f, 0.5f, 0.5f, 0.5f}};
    const Surface<Pixel32> kernel(3, 1, sizeof weights, weights);
    Reference::Picture mapped = picture, diffused = picture;
    Reference::MapNearest(mapped, palette);
    Reference::Diffuse(diffused, matrix, palette, true);
    for (const SimdPath path : SupportedSimdPaths()) {
        SetSimdPath(path);
        Surface<Pixel32> surface = Pictures::ToSurface(picture);
        Quantizers::Process(surface, set);
        EXPECT_EQ(Pictures::Difference(surface, mapped), "") << SimdPathName(path);
        surface = Pictures::ToSurface(picture);
        Dither::ErrorDiffusion(surface, kernel, set, true);
        EXPECT_EQ(Pictures::Difference(surface, diffused), "") << SimdPathName(path);
    }
}

// The pixels are just inside and just outside 0..1, where the candidate grid ends.
TEST_F(QuantizeTest, LongPalettesAreExactAtTheEdgesOfTheGrid) {
    const auto spread = [](int i, int step) { return static_cast<float>(i * step % 10007) / 10007.0f; };
    Reference::Palette palette;
    std::vector<Pixel32> colours;
    for (int i = 0; i < 60; ++i) {
        palette.push_back({1, spread(i, 571), spread(i, 3119), spread(i, 7019)});
        colours.push_back({1, palette.back().r, palette.back().g, palette.back().b});
    }
    Reference::Picture picture{400, 250, {}};
    for (int i = 0; i < 100000; ++i) {
        Reference::Colour pixel{1, spread(i, 83), spread(i, 4191), spread(i, 9071)};
        (i % 3 == 0   ? pixel.r
         : i % 3 == 1 ? pixel.g
                      : pixel.b) = (i % 2 ? -0.045f : 0.995f) + spread(i, 6131) / 20;
        picture.pixels.push_back(pixel);
    }
    Reference::Picture expected = picture;
    Reference::MapNearest(expected, palette);
    for (const SimdPath path : SupportedSimdPaths()) {
        SetSimdPath(path);
        Surface<Pixel32> surface = Pictures::ToSurface(picture);
        Quantizers::Process(surface, ColourSet{colours.data(), 60, false, 0});
        EXPECT_EQ(Pictures::Difference(surface, expected), "") << SimdPathName(path);
    }
}

TEST_F(QuantizeTest, EmptySurfacesStayUnchanged) {
    Surface<Pixel32> none, noRows(5, 0), noColumns(0, 5);
    for (Surface<Pixel32>* surface : {&none, &noRows, &noColumns})
        for (unsigned selector = 0; selector < 23; ++selector)
            for (const int mode : {0, 2, 13})
                Quantize(*surface, selector, static_cast<DitheringMode>(mode), 0.5f, true);
    EXPECT_EQ(noRows.Width(), 5u);
}

#if defined(__x86_64__)
TEST(SimdPathTest, ThePathsAreThoseThatTheCompilersFunctionAllows) {
    const auto paths = SupportedSimdPaths();
    const auto has = [&](SimdPath path) {
        return std::find(paths.begin(), paths.end(), path) != paths.end();
    };
    EXPECT_EQ(has(SimdPath::Avx2), __builtin_cpu_supports("avx2") != 0);
    EXPECT_EQ(has(SimdPath::Avx512),
              __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512vl") &&
                  __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512dq"));
}
#endif

} // namespace
