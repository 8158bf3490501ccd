#include <gtest/gtest.h>

#include "tests/plugin/Probe.h"

namespace {

using probe::Difference;
using probe::Expected;
using stricthost::FrameRequest;
using stricthost::Instance;
using stricthost::Personality;

// Whole frames through the plug-in as it ships.

TEST(FramesGLTest, OddSizesAndEveryDepthComeBackPixelForPixel) {
    for (const auto& [name, personality] : probe::Personalities) {
        probe::Host host("probe", personality);
        Instance& instance = host.Apply(17, 9, 0);
        std::uint32_t seed = 1;
        for (const unsigned depth : {8u, 16u, 32u})
            for (const auto& [width, height] : {std::pair{1u, 1u}, {17u, 9u}, {2u, 31u}}) {
                const auto input = probe::Noise(width, height, depth, ++seed);
                instance.SetValue(probe::Reach, double(width / 2));
                FrameRequest request;
                request.input = &input;
                EXPECT_EQ(Difference(instance.Render(request), Expected(input, width / 2)), "") << name;
            }
    }
}

TEST(FramesGLTest, LargerAndSmallerOutputsLieAroundTheMiddle) {
    for (const auto& [name, personality] : probe::Personalities) {
        probe::Host host("probe_resizing", personality);
        Instance& instance = host.Apply(12, 10, 5);
        const auto input = probe::Noise(12, 10, 8, 99);
        FrameRequest request;
        request.input = &input;
        for (const int grow : {3, -2, 0}) {
            instance.SetValue(probe::Grow, double(grow));
            const auto result = instance.Render(request);
            ASSERT_EQ(result.error, PF_Err_NONE);
            if (personality == Personality::Premiere && grow < 0) {
                // The host's output keeps its size; the smaller picture lies in its middle.
                ASSERT_EQ(result.picture.width, 12u);
                continue;
            }
            EXPECT_EQ(Difference(result, Expected(input, 5, grow)), "") << name << " by " << grow;
            EXPECT_EQ(result.originX, -grow) << name;
            EXPECT_EQ(result.originY, -grow) << name;
        }
    }
}

TEST(FramesGLTest, InputsLieAnywhereOnTheLayer) {
    probe::Host host("probe", Personality::AfterEffects);
    Instance& instance = host.Apply(40, 30, 0);
    const auto input = probe::Noise(6, 5, 16, 3);
    FrameRequest request;
    request.input = &input;
    request.layerWidth = 40;
    request.layerHeight = 30;
    for (const auto& [x, y] : {std::pair{-7, -2}, {11, 4}}) {
        request.inputX = x;
        request.inputY = y;
        const auto result = instance.Render(request);
        EXPECT_EQ(Difference(result, input), "");
        EXPECT_EQ(result.originX, x);
        EXPECT_EQ(result.originY, y);
    }
}

TEST(FramesGLTest, InstancesKeepTheirValuesWhileOthersChange) {
    for (const auto& [name, personality] : probe::Personalities) {
        probe::Host host("probe", personality);
        const auto input = probe::Noise(8, 4, 8, 7);
        FrameRequest request;
        request.input = &input;
        const auto expect = [&, host_name = name](Instance& instance, unsigned reach, const char* when) {
            EXPECT_EQ(Difference(instance.Render(request), Expected(input, reach)), "")
                << host_name << ", " << when;
        };
        Instance& first = host.Apply(8, 4, 3);
        Instance& second = host.Apply(8, 4, 0);
        expect(first, 3, "interleaved");
        expect(second, 0, "interleaved");
        first.SetValue(probe::Reach, 6.0);
        expect(first, 6, "changed between frames");
        Instance& copy = first.Duplicate();
        copy.SetValue(probe::Reach, 2.0);
        expect(first, 6, "after its duplicate changed");
        expect(copy, 2, "the duplicate changed");
        first.Delete();
        expect(second, 0, "after another went");
        copy.SaveAndReopen();
        copy.SaveAndReopen();
        expect(copy, 2, "reopened twice");
        Instance& opened = host.OpenInstance(nullptr, 8, 4); // a project without data for it
        opened.UpdateUI();
        EXPECT_EQ(opened.Render(request).error, PF_Err_NONE);
    }
}

} // namespace
