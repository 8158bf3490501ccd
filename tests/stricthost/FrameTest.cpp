#include "tests/stricthost/HostTest.h"

namespace {

using testing::ElementsAre;

class FrameTest : public HostTest {};

TEST_F(FrameTest, EveryDepthPassesThroughEveryPersonality) {
    for (const auto personality :
         {Personality::AfterEffects, Personality::AfterEffectsPlain, Personality::Premiere})
        for (const unsigned depth : {8u, 16u, 32u})
            for (const unsigned padding : {0u, 13u}) {
                m_Options.personality = personality;
                m_Options.rowPadding = padding;
                m_Input = Gradient(5, 7, depth);
                const FrameResult result = RenderOnce();
                EXPECT_EQ(result.error, PF_Err_NONE);
                EXPECT_EQ(result.picture.depth, depth);
                EXPECT_EQ(result.picture.bytes, Inverted(m_Input).bytes) << depth << ", " << padding;
            }
}

TEST_F(FrameTest, PremiereDeliversEveryDeclaredFormatAndNoOther) {
    std::uint32_t seen = 0;
    m_Plugin.before[PF_Cmd_RENDER] = [&seen](Command& c) { seen = c.FormatOf(c.Input()); };
    m_Options.personality = Personality::Premiere;
    for (const auto& [format, bits] : m_Plugin.formats) {
        m_Input = Gradient(40, 3, bits);
        m_Request.format = format;
        EXPECT_EQ(RenderOnce().picture.bytes, Inverted(m_Input).bytes) << format;
        EXPECT_EQ(seen, format);
    }
    m_Plugin.formats = {{0x62677261, 8}};
    m_Input = Gradient(4, 4, 16);
    for (const std::uint32_t notDeclared : {0u, 0x62677258u}) {
        m_Request.format = notDeclared;
        EXPECT_THROW(Start().Render(m_Request), std::invalid_argument);
    }
}

TEST_F(FrameTest, PremiereReordersTheChannelsOfBgraWorldsOnly) {
    m_Options.personality = Personality::Premiere;
    m_Input = fxhost::Picture(1, 1, 8);
    m_Input.bytes = {40, 1, 2, 3}; // alpha, red, green, blue
    const std::pair<bool, std::vector<int>> rows[] = {{false, {40, 1, 2, 3}}, {true, {3, 2, 1, 40}}};
    for (const auto& [bgra, inMemory] : rows) {
        std::vector<int> seen;
        m_Plugin.before[PF_Cmd_RENDER] = [&seen](Command& c) {
            const auto* bytes = reinterpret_cast<const std::uint8_t*>(c.Input().data);
            seen.assign(bytes, bytes + 4);
        };
        m_Options.quirks.bgra = bgra;
        m_Plugin.formats = {{0x62677261, 8}, {0x61726762, 8}};
        EXPECT_EQ(RenderOnce().picture.bytes, Inverted(m_Input).bytes) << bgra;
        EXPECT_EQ(seen, inMemory) << bgra;
    }
}

TEST_F(FrameTest, PremiereMayTrimTheInputAndPrepareAnOutputOfAnotherSize) {
    m_Plugin.before[PF_Cmd_RENDER] = [](Command& c) {
        EXPECT_THAT(
            (Numbers{double(c.in->pre_effect_source_origin_x), double(c.in->pre_effect_source_origin_y),
                     double(c.in->width), double(c.output->width), double(c.output->height)}),
            ElementsAre(-2, 3, 48, 50, 6));
    };
    m_Request.layerWidth = 48;
    m_Request.outputWidth = 50;
    m_Request.outputHeight = 6;
    m_Request.preEffectOriginX = -2;
    m_Request.preEffectOriginY = 3;
    m_Options.personality = Personality::Premiere;
    EXPECT_EQ(RenderOnce().picture.height, 6u);
}

TEST_F(FrameTest, FrameSetupReportsTheLayerAtFullResolution) {
    m_Plugin.before[PF_Cmd_FRAME_SETUP] = [](Command& c) {
        EXPECT_THAT((Numbers{double(c.in->width), double(c.in->height), double(c.in->downsample_x.den),
                             double(c.in->downsample_y.den), double(c.in->pixel_aspect_ratio.num)}),
                    ElementsAre(80, 40, 2, 4, 3)); // of an input of 40 x 10
        EXPECT_THAT((Numbers{double(c.in->current_time), double(c.in->time_step), double(c.in->time_scale)}),
                    ElementsAre(-6, 2, 50));
        EXPECT_THAT((Numbers{double(c.Input().width), double(c.Input().height), double(c.out->width)}),
                    ElementsAre(40, 10, 40));
        EXPECT_EQ(c.Input().data, nullptr);
    };
    m_Request.downsampleX = {1, 2};
    m_Request.downsampleY = {1, 4};
    m_Request.pixelAspect = {3, 2};
    m_Request.time = -6;
    m_Request.timeStep = 2;
    m_Request.timeScale = 50;
    RenderOnce();
}

TEST_F(FrameTest, OutputSizeChangesOnlyWhenTheFlagsAllowIt) {
    const PF_OutFlags flags = m_Plugin.flags;
    for (const A_long border : {8, -4}) // around the input of 40 x 10
        for (const bool allowed : {true, false}) {
            const bool expands = (border > 0) == allowed;
            m_Plugin.flags = flags | (expands ? PF_OutFlag_I_EXPAND_BUFFER : PF_OutFlag_I_SHRINK_BUFFER);
            m_Plugin.after[PF_Cmd_FRAME_SETUP] = [border](Command& c) {
                c.out->width = 40 + 2 * border;
                c.out->height = 10 + border;
                c.out->origin = {{border}, {border / 2}};
            };
            const A_long granted = allowed ? border : 0;
            m_Plugin.before[PF_Cmd_RENDER] = [granted](Command& c) {
                EXPECT_EQ(c.in->output_origin_x, granted);
                EXPECT_EQ(c.in->output_origin_y, granted / 2);
            };
            const FrameResult result = RenderOnce();
            EXPECT_EQ(result.resizeRefused, !allowed);
            EXPECT_EQ(result.picture.width, 40 + 2 * granted);
            EXPECT_EQ(result.originX, -granted);
            EXPECT_EQ(result.originY, -granted / 2);
        }
}

TEST_F(FrameTest, FailedRenderReturnsItsMessageWithoutPictureOrViolation) {
    m_Plugin.does[PF_Cmd_RENDER] = [](Command& c) {
        std::strcpy(c.out->return_msg, "broken");
        return PF_Err_INTERNAL_STRUCT_DAMAGED;
    };
    const FrameResult result = RenderOnce();
    EXPECT_EQ(result.error, PF_Err_INTERNAL_STRUCT_DAMAGED);
    EXPECT_EQ(result.message, "broken");
    EXPECT_EQ(result.picture.width, 0u);
    EXPECT_EQ(m_Plugin.log, "gpsFRDdx"); // set down all the same
}

TEST_F(FrameTest, PixelThatEqualsTheFillPatternByChanceIsNoViolation) {
    std::vector<std::uint8_t> patternLike; // what the pixel "should" be, by chance
    m_Plugin.before[PF_Cmd_RENDER] = [&](Command& c) {
        if (patternLike.empty())
            patternLike.assign(&c.output->data->alpha, &c.output->data->alpha + 4);
    };
    m_Plugin.after[PF_Cmd_RENDER] = [&](Command& c) { std::memcpy(c.output->data, patternLike.data(), 4); };
    RenderOnce();
}

TEST_F(FrameTest, CopyAndFillWorkOnWholeWorldsAndParts) {
    m_Input = Gradient(6, 4);
    m_Plugin.does[PF_Cmd_RENDER] = [](Command& c) {
        PF_LayerDef input = c.Input(), own = {}, deep = {};
        const PF_ProgPtr effect = c.in->effect_ref;
        c.Utils().new_world(effect, 6, 4, PF_NewWorldFlag_NONE, &own);
        c.Utils().new_world(effect, 6, 4, PF_NewWorldFlag_DEEP_PIXELS, &deep);
        EXPECT_NE(c.Utils().copy(effect, &input, &deep, nullptr, nullptr), PF_Err_NONE);
        c.Utils().copy(effect, &input, &own, nullptr, nullptr);
        c.Utils().copy(effect, &own, c.output, nullptr, nullptr);
        PF_Rect from = {2, 0, 9, 9}, to = {4, 0, 6, 2}; // `from` ends at (6, 4), so every second pixel
        c.Utils().copy(effect, &own, c.output, &from, &to);
        const PF_Pixel color = {1, 2, 3, 4};
        const PF_Pixel16 deepColor = {1, 2, 3, 4};
        const PF_Rect corner = {-3, 0, 1, 1};
        EXPECT_NE(c.Utils().fill16(effect, &deepColor, nullptr, c.output), PF_Err_NONE);
        EXPECT_EQ(c.Utils().fill16(effect, &deepColor, nullptr, &deep), PF_Err_NONE);
        c.Utils().dispose_world(effect, &own);
        c.Utils().dispose_world(effect, &deep);
        return c.Utils().fill(effect, &color, &corner, c.output);
    };
    fxhost::Picture expected = m_Input;
    for (const unsigned y : {0u, 1u})
        for (const unsigned x : {0u, 1u})
            std::copy_n(m_Input.Row(2 * y) + 4 * (2 + 2 * x), 4, expected.Row(y) + 4 * (4 + x));
    std::iota(expected.Row(0), expected.Row(0) + 4, std::uint8_t{1});
    EXPECT_EQ(RenderOnce().picture.bytes, expected.bytes);
}

} // namespace
