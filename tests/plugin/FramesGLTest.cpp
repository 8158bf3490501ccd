#include <gtest/gtest.h>

#include "tests/plugin/Probe.h"

namespace {

using stricthost::FrameRequest;
using stricthost::Instance;
using stricthost::Personality;
using stricthost::StrictHost;

constexpr struct {
    const char* name;
    Personality personality;
} s_Hosts[] = {{"After Effects", Personality::AfterEffects},
               {"After Effects, plain", Personality::AfterEffectsPlain},
               {"Premiere Pro", Personality::Premiere}};

// Whole frames through the plug-in as it ships.
class FramesGLTest : public testing::Test {
protected:
    static std::unique_ptr<StrictHost> Load(const char* name, Personality personality) {
        auto host = std::make_unique<StrictHost>(probe::Bundle(name), probe::Options(personality));
        host->GlobalSetup();
        host->ParamsSetup();
        return host;
    }

    static std::string Violations(StrictHost& host) {
        host.Finish();
        std::string all;
        for (const std::string& text : host.Violations())
            all += text + "\n";
        return all;
    }
};

TEST_F(FramesGLTest, OddSizesAndEveryDepthComeBackPixelForPixel) {
    for (const auto& row : s_Hosts) {
        const auto host = Load("probe", row.personality);
        Instance& instance = host->NewInstance(17, 9);
        instance.UpdateUI();
        instance.SetValue(probe::Amount, 1.0);
        std::uint32_t seed = 1;
        for (const unsigned depth : {8u, 16u, 32u})
            for (const auto& [width, height] : {std::pair{1u, 1u}, {17u, 9u}, {2u, 31u}}) {
                const auto input = probe::Noise(width, height, depth, ++seed);
                instance.SetValue(probe::Reach, static_cast<double>(width / 2));
                FrameRequest request;
                request.input = &input;
                const auto result = instance.Render(request);
                EXPECT_EQ(result.error, PF_Err_NONE);
                EXPECT_EQ(probe::Difference(result.picture, probe::Expected(input, true, width / 2, 0)), "")
                    << row.name;
            }
        EXPECT_EQ(Violations(*host), "") << row.name;
    }
}

TEST_F(FramesGLTest, LargerAndSmallerOutputsLieAroundTheMiddle) {
    for (const auto& row : s_Hosts) {
        const auto host = Load("probe_resizing", row.personality);
        Instance& instance = host->NewInstance(12, 10);
        instance.UpdateUI();
        instance.SetValue(probe::Amount, 1.0);
        instance.SetValue(probe::Reach, 5.0);
        const auto input = probe::Noise(12, 10, 8, 99);
        FrameRequest request;
        request.input = &input;
        for (const int grow : {3, -2, 0}) {
            instance.SetValue(probe::Grow, static_cast<double>(grow));
            const auto result = instance.Render(request);
            ASSERT_EQ(result.error, PF_Err_NONE);
            auto expected = probe::Expected(input, true, 5, grow);
            if (row.personality == Personality::Premiere && grow < 0) {
                // The host's output keeps its size; the smaller picture lies in its middle.
                ASSERT_EQ(result.picture.width, 12u);
                continue;
            }
            EXPECT_EQ(probe::Difference(result.picture, expected), "") << row.name << " by " << grow;
            EXPECT_EQ(result.originX, -grow) << row.name;
            EXPECT_EQ(result.originY, -grow) << row.name;
        }
        EXPECT_EQ(Violations(*host), "") << row.name;
    }
}

TEST_F(FramesGLTest, InputsAnywhereOnTheLayerAndNoInputAtAll) {
    const auto host = Load("probe", Personality::AfterEffects);
    Instance& instance = host->NewInstance(40, 30);
    instance.UpdateUI();
    const auto input = probe::Noise(6, 5, 16, 3);
    FrameRequest request;
    request.input = &input;
    request.layerWidth = 40;
    request.layerHeight = 30;
    for (const auto& [x, y] : {std::pair{-7, -2}, {11, 4}}) {
        request.inputX = x;
        request.inputY = y;
        const auto result = instance.Render(request);
        EXPECT_EQ(probe::Difference(result.picture, input), "");
        EXPECT_EQ(result.originX, x);
        EXPECT_EQ(result.originY, y);
    }
    EXPECT_EQ(Violations(*host), "");
}

TEST_F(FramesGLTest, InstancesKeepTheirValuesInEveryOrderOfCommands) {
    for (const auto& row : s_Hosts) {
        const auto host = Load("probe", row.personality);
        Instance& first = host->NewInstance(8, 4);
        Instance& second = host->NewInstance(8, 4);
        const auto input = probe::Noise(8, 4, 8, 7);
        FrameRequest request;
        request.input = &input;
        const auto expect = [&](Instance& instance, bool amount, unsigned reach, const char* when) {
            const auto result = instance.Render(request);
            EXPECT_EQ(probe::Difference(result.picture, probe::Expected(input, amount, reach, 0)), "")
                << row.name << ", " << when;
        };
        for (Instance* instance : {&first, &second})
            instance->UpdateUI();
        first.SetValue(probe::Amount, 1.0);
        first.SetValue(probe::Reach, 3.0);
        second.SetValue(probe::Amount, 0.0);
        expect(first, true, 3, "interleaved");
        expect(second, false, 0, "interleaved");
        first.SetValue(probe::Reach, 6.0);
        expect(first, true, 6, "changed between frames");
        Instance& copy = first.Duplicate();
        expect(copy, true, 6, "a duplicate");
        copy.SetValue(probe::Reach, 2.0);
        expect(first, true, 6, "after its duplicate changed");
        expect(copy, true, 2, "the duplicate changed");
        first.Delete();
        expect(copy, true, 2, "after the original went");
        expect(second, false, 0, "after another went");
        second.SaveAndReopen();
        copy.SaveAndReopen();
        copy.SaveAndReopen();
        expect(copy, true, 2, "reopened twice");
        expect(second, false, 0, "reopened");
        Instance& opened = host->OpenInstance(nullptr, 8, 4); // a project without data for it
        opened.UpdateUI();
        opened.SetValue(probe::Amount, 1.0);
        opened.SetValue(probe::Reach, 8.0);
        const auto result = opened.Render(request);
        EXPECT_EQ(result.error, PF_Err_NONE) << "passes the input through";
        EXPECT_EQ(Violations(*host), "") << row.name;
    }
}

} // namespace
