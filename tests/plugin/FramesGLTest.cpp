#include <filesystem>
#include <gtest/gtest.h>
#include <map>

#include "tests/plugin/Probe.h"

namespace {

using probe::Difference;
using probe::Expected;
using stricthost::FrameSpec;
using stricthost::Instance;
using stricthost::Personality;

// Whole frames through the plug-in as it is shipped.

TEST(FramesGLTest, FramesOfOddSizesAreRightAtEveryDepthAndPositionOnTheLayer) {
    for (const auto& [name, personality] : probe::Personalities) {
        probe::Host host("probe", personality);
        Instance& instance = host.Apply(40, 40, 0);
        for (const unsigned depth : {8u, 16u, 32u})
            for (const auto& [width, height, x, y] :
                 {std::tuple{1u, 1u, 0, 0}, {17u, 9u, -7, -2}, {2u, 31u, 11, 4}}) {
                const auto input = probe::Noise(width, height, depth, depth + width);
                instance.SetValue(probe::Reach, double(width / 2));
                FrameSpec request = {.input = &input, .wanted = {}};
                if (personality == Personality::AfterEffects) {
                    request.layerWidth = request.layerHeight = 40;
                    request.inputX = x;
                    request.inputY = y;
                }
                const auto result = instance.Render(request);
                EXPECT_EQ(Difference(result, Expected(input, width / 2)), "") << name;
                EXPECT_EQ(result.originX, request.inputX) << name;
                EXPECT_EQ(result.originY, request.inputY) << name;
            }
    }
}

TEST(FramesGLTest, BgraWorldsOfPremiereKeepTheirChannelOrder) {
    probe::Host host("probe", Personality::Premiere, true);
    const auto input = probe::Noise(9, 5, 8, 3);
    const FrameSpec request = {.input = &input, .wanted = {}};
    EXPECT_EQ(Difference(host.Apply(9, 5, 4).Render(request), Expected(input, 4)), "");
}

TEST(FramesGLTest, EverySampleEffectGivesTheSameBytesInAfterEffectsAndPremierePro) {
    const auto input = probe::Noise(40, 30, 8, 7);
    for (const auto& effect : std::filesystem::directory_iterator("effects")) {
        if (!effect.is_directory())
            continue;
        std::map<Personality, std::vector<std::uint8_t>> bytes;
        const std::string name = effect.path().filename().string();
        for (const auto personality : {Personality::AfterEffects, Personality::Premiere}) {
            probe::Host host(name.c_str(), personality);
            Instance& instance = host.NewInstance(40, 30);
            instance.UpdateUI();
            bytes[personality] = instance.Render({.input = &input, .wanted = {}}).picture.bytes;
            EXPECT_FALSE(bytes[personality].empty()) << name;
        }
        EXPECT_TRUE(bytes[Personality::AfterEffects] == bytes[Personality::Premiere]) << name;
    }
}

TEST(FramesGLTest, LargerAndSmallerOutputsAreCentredOnTheInput) {
    for (const auto& [name, personality] : probe::Personalities) {
        probe::Host host("probe_resizing", personality);
        Instance& instance = host.Apply(12, 10, 5);
        const auto input = probe::Noise(12, 10, 8, 99);
        const FrameSpec request = {.input = &input, .wanted = {}};
        for (const int grow : {3, -2, 0}) {
            instance.SetValue(probe::Grow, double(grow));
            const auto result = instance.Render(request);
            ASSERT_EQ(result.error, PF_Err_NONE);
            // Premiere Pro's output never shrinks; a smaller picture has a transparent border in it.
            const bool bordered = personality == Personality::Premiere && grow < 0;
            const auto picture = Expected(input, 5, grow);
            EXPECT_EQ(Difference(result, bordered ? Expected(picture, 0, -grow) : picture), "")
                << name << " by " << grow;
            EXPECT_EQ(result.originX, bordered ? 0 : -grow) << name;
            EXPECT_EQ(result.originY, bordered ? 0 : -grow) << name;
        }
    }
}

} // namespace
