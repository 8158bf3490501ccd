#include <gmock/gmock.h>

#include "AE_EffectCBSuites.h"
#include "PrSDKAESupport.h"
#include "tests/stricthost/StandIn.h"

namespace {

using stricthost::FrameRequest;
using stricthost::FrameResult;
using stricthost::Options;
using stricthost::Personality;
using testing::IsEmpty;

constexpr std::uint32_t s_Declared[] = {0x62677261, 0x62677278, 0x62677258,
                                        0x62677241, 0x62675241, 0x62675258};

FrameResult RenderOnce(StandIn& plugin, Options options, const FrameRequest& request) {
    plugin.formats.assign(std::begin(s_Declared), std::end(s_Declared));
    const auto host = SetUpHost(std::move(options));
    FrameResult result = host->NewInstance().Render(request);
    host->Finish();
    EXPECT_THAT(host->Violations(), IsEmpty());
    return result;
}

TEST(FrameTest, EveryDepthPassesThroughEveryPersonality) {
    for (const Personality personality :
         {Personality::AfterEffects, Personality::AfterEffectsPlain, Personality::Premiere})
        for (const unsigned depth : {8u, 16u, 32u})
            for (const unsigned padding : {0u, 13u}) {
                StandIn plugin;
                Options options;
                options.personality = personality;
                options.rowPadding = padding;
                const fxhost::Picture input = Gradient(5, 7, depth);
                FrameRequest request;
                request.input = &input;
                const FrameResult result = RenderOnce(plugin, options, request);
                EXPECT_EQ(result.error, PF_Err_NONE);
                EXPECT_EQ(result.picture.depth, depth);
                EXPECT_EQ(result.picture.bytes, Inverted(input).bytes)
                    << depth << " bits, padding " << padding;
            }
}

TEST(FrameTest, PremiereFormatsAreToldAsTheyWereDeclared) {
    for (const std::uint32_t format : s_Declared) {
        StandIn plugin;
        std::uint32_t seen = 0;
        plugin.before[PF_Cmd_RENDER] = [&seen](Command& c) {
            const auto* suite =
                static_cast<const PF_PixelFormatSuite*>(Acquire(c, "PF Pixel Format Suite", 1));
            auto code = PrPixelFormat_Invalid;
            EXPECT_EQ(suite->GetPixelFormat(&c.params[0]->u.ld, &code), PF_Err_NONE);
            seen = static_cast<std::uint32_t>(code);
            Release(c, "PF Pixel Format Suite", 1);
        };
        Options options;
        options.personality = Personality::Premiere;
        const unsigned depth = format == 0x62677261 || format == 0x62677278   ? 8
                               : format == 0x62677258 || format == 0x62677241 ? 16
                                                                              : 32;
        const fxhost::Picture input = Gradient(40, 3, depth);
        FrameRequest request;
        request.input = &input;
        request.format = format;
        RenderOnce(plugin, options, request);
        EXPECT_EQ(seen, format);
    }
}

TEST(FrameTest, AFormatThatWasNotDeclaredCannotBeAskedFor) {
    StandIn plugin;
    plugin.formats = {0x62677261};
    Options options;
    options.personality = Personality::Premiere;
    const auto host = SetUpHost(options);
    const fxhost::Picture deep = Gradient(4, 4, 16);
    FrameRequest request;
    request.input = &deep;
    stricthost::Instance& instance = host->NewInstance();
    EXPECT_THROW(instance.Render(request), std::invalid_argument);
}

TEST(FrameTest, TheFrameIsDescribedAtFullResolution) {
    StandIn plugin;
    plugin.before[PF_Cmd_FRAME_SETUP] = [](Command& c) {
        EXPECT_EQ(c.in->width, 80); // the input has 40 at half resolution
        EXPECT_EQ(c.in->height, 36);
        EXPECT_EQ(c.params[0]->u.ld.width, 40);
        EXPECT_EQ(c.params[0]->u.ld.data, nullptr);
        EXPECT_EQ(c.in->downsample_x.den, 2u);
        EXPECT_EQ(c.in->pixel_aspect_ratio.num, 3);
        EXPECT_EQ(c.in->current_time, -6);
        EXPECT_EQ(c.in->time_step, 2);
        EXPECT_EQ(c.in->time_scale, 50u);
        EXPECT_EQ(c.out->width, 40);
    };
    const fxhost::Picture input = Gradient(40, 9);
    FrameRequest request;
    request.input = &input;
    request.downsampleX = {1, 2};
    request.downsampleY = {1, 4};
    request.pixelAspect = {3, 2};
    request.time = -6;
    request.timeStep = 2;
    request.timeScale = 50;
    Options options;
    options.personality = Personality::AfterEffectsPlain;
    RenderOnce(plugin, options, request);
}

TEST(FrameTest, APluginWithTheFlagForItChoosesTheOutputsSize) {
    for (const bool allowed : {true, false}) {
        StandIn plugin;
        if (allowed)
            plugin.flags |= PF_OutFlag_I_EXPAND_BUFFER;
        plugin.after[PF_Cmd_FRAME_SETUP] = [](Command& c) {
            c.out->width = 60;
            c.out->height = 20;
            c.out->origin = {{10}, {5}};
        };
        plugin.before[PF_Cmd_RENDER] = [allowed](Command& c) {
            EXPECT_EQ(c.in->output_origin_x, allowed ? 10 : 0);
            EXPECT_EQ(c.in->output_origin_y, allowed ? 5 : 0);
        };
        const fxhost::Picture input = Gradient(40, 10);
        FrameRequest request;
        request.input = &input;
        Options options;
        options.personality = Personality::AfterEffectsPlain;
        const FrameResult result = RenderOnce(plugin, options, request);
        EXPECT_EQ(result.resizeRefused, !allowed);
        EXPECT_EQ(result.picture.width, allowed ? 60u : 40u);
        EXPECT_EQ(result.originX, allowed ? -10 : 0);
        EXPECT_EQ(result.originY, allowed ? -5 : 0);
    }
}

TEST(FrameTest, PremiereMayHandOverAnOutputOfAnotherSizeAndATrimmedInput) {
    StandIn plugin;
    plugin.before[PF_Cmd_RENDER] = [](Command& c) {
        EXPECT_EQ(c.in->pre_effect_source_origin_x, -2);
        EXPECT_EQ(c.in->pre_effect_source_origin_y, 3);
        EXPECT_EQ(c.in->width, 48);
        EXPECT_EQ(c.output->width, 50);
        EXPECT_EQ(c.output->height, 6);
    };
    const fxhost::Picture input = Gradient(40, 10);
    FrameRequest request;
    request.input = &input;
    request.layerWidth = 48;
    request.outputWidth = 50;
    request.outputHeight = 6;
    request.preEffectOriginX = -2;
    request.preEffectOriginY = 3;
    Options options;
    options.personality = Personality::Premiere;
    EXPECT_EQ(RenderOnce(plugin, options, request).picture.height, 6u);
}

TEST(FrameTest, FrameDataTravelsFromSetupToSetdown) {
    StandIn plugin;
    PF_Handle made = nullptr;
    plugin.after[PF_Cmd_FRAME_SETUP] = [&made](Command& c) {
        EXPECT_EQ(c.in->frame_data, nullptr);
        c.out->frame_data = made = Handles(c).host_new_handle(8);
    };
    plugin.before[PF_Cmd_RENDER] = [&made](Command& c) { EXPECT_EQ(c.in->frame_data, made); };
    plugin.before[PF_Cmd_FRAME_SETDOWN] = [&made](Command& c) {
        EXPECT_EQ(c.out->frame_data, made);
        Handles(c).host_dispose_handle(c.out->frame_data);
        c.out->frame_data = nullptr;
    };
    const fxhost::Picture input = Gradient(40, 3);
    FrameRequest request;
    request.input = &input;
    Options options;
    options.personality = Personality::Premiere;
    RenderOnce(plugin, options, request);
    EXPECT_NE(made, nullptr);
}

TEST(FrameTest, AnErrorGivesNoPictureAndNoBlameForTheOutput) {
    StandIn plugin;
    plugin.instead[PF_Cmd_RENDER] = [](Command&) -> PF_Err { return PF_Err_INTERNAL_STRUCT_DAMAGED; };
    const fxhost::Picture input = Gradient(4, 4);
    FrameRequest request;
    request.input = &input;
    Options options;
    options.personality = Personality::AfterEffectsPlain;
    const FrameResult result = RenderOnce(plugin, options, request);
    EXPECT_EQ(result.error, PF_Err_INTERNAL_STRUCT_DAMAGED);
    EXPECT_EQ(result.picture.width, 0u);
    EXPECT_EQ(plugin.log, "gpsFRDdx"); // set down all the same
}

TEST(FrameTest, CopyAndFillWorkOnWholeWorldsAndParts) {
    StandIn plugin;
    plugin.instead[PF_Cmd_RENDER] = [](Command& c) -> PF_Err {
        c.in->utils->copy(c.in->effect_ref, &c.params[0]->u.ld, c.output, nullptr, nullptr);
        const PF_Pixel color = {1, 2, 3, 4};
        const PF_Rect corner = {0, 0, 1, 1};
        return c.in->utils->fill(c.in->effect_ref, &color, &corner, c.output);
    };
    const fxhost::Picture input = Gradient(6, 4);
    FrameRequest request;
    request.input = &input;
    Options options;
    options.personality = Personality::AfterEffectsPlain;
    fxhost::Picture expected = input;
    for (std::uint8_t i = 0; i < 4; ++i)
        expected.bytes[i] = static_cast<std::uint8_t>(i + 1);
    EXPECT_EQ(RenderOnce(plugin, options, request).picture.bytes, expected.bytes);
}

} // namespace
