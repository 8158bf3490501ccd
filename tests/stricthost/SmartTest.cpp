#include "tests/stricthost/HostTest.h"

namespace {

using testing::ElementsAre;

class SmartTest : public HostTest {
protected:
    SmartTest() { m_Options.personality = Personality::AfterEffects; }
};

std::vector<A_long> Sides(const PF_LRect& rect) {
    return {rect.left, rect.top, rect.right, rect.bottom};
}

TEST_F(SmartTest, SmartRenderReceivesOnlyTheRequestedPart) {
    m_Plugin.before[PF_Cmd_SMART_PRE_RENDER] = [](Command& c) {
        EXPECT_EQ(c.Pre().input->output_request.rect.left, 1);
        EXPECT_EQ(c.Pre().input->bitdepth, 16);
        EXPECT_EQ(c.params, nullptr);
        const PF_CheckoutResult got = c.CheckOutLayer(2);
        EXPECT_THAT(Sides(got.result_rect), ElementsAre(1, 3, 5, 8));
        EXPECT_THAT(Sides(got.max_result_rect), ElementsAre(-3, 2, 5, 8)); // whatever was asked for
    };
    m_Plugin.does[PF_Cmd_SMART_RENDER] = [](Command& c) {
        const PF_EffectWorld *input = c.LayerPixels(2), *output = c.Output();
        for (const PF_EffectWorld* world : {input, output})
            EXPECT_THAT((std::vector<A_long>{world->origin_x, world->origin_y, world->pix_aspect_ratio.num}),
                        ElementsAre(1, 3, 3));
        EXPECT_EQ(c.in->output_origin_x, -4); // the input starts left of the output
        EXPECT_EQ(c.in->output_origin_y, -1);
        Invert(*input, *output, 16);
        return c.Smart().cb->checkin_layer_pixels(c.in->effect_ref, 2);
    };
    m_Input = Gradient(8, 6, 16);
    m_Request.inputX = -3; // the layer's buffer covers (-3, 2) to (5, 8)
    m_Request.inputY = 2;
    m_Request.pixelAspect = {3, 2};
    m_Request.wanted = PF_LRect{1, 3, 20, 20};
    const FrameResult result = RenderOnce();
    EXPECT_EQ(result.originX, 1);
    EXPECT_EQ(result.originY, 3);
    fxhost::Picture expected(4, 5, 16); // 1 to 5, 3 to 8
    for (unsigned y = 0; y < 5; ++y)
        std::copy_n(Inverted(m_Input).Row(y + 1) + 4 * 8, 4 * 8, expected.Row(y));
    EXPECT_EQ(result.picture.bytes, expected.bytes);
}

TEST_F(SmartTest, EmptyLayerIsNotRendered) {
    m_Request.input = nullptr;
    m_Request.depth = 8;
    const FrameResult result = RenderOnce();
    EXPECT_EQ(result.error, PF_Err_NONE);
    EXPECT_EQ(result.picture.width, 0u);
    EXPECT_EQ(m_Plugin.log, "gpsPdx");
}

TEST_F(SmartTest, PreRenderDataIsDeletedAfterTheFrame) {
    static int deleted;
    deleted = 0;
    int data = 5;
    m_Plugin.after[PF_Cmd_SMART_PRE_RENDER] = [&data](Command& c) {
        c.Pre().output->pre_render_data = &data;
        c.Pre().output->delete_pre_render_data_func = [](void* gone) { deleted += *static_cast<int*>(gone); };
    };
    m_Plugin.before[PF_Cmd_SMART_RENDER] = [&data](Command& c) {
        EXPECT_EQ(c.Smart().input->pre_render_data, &data);
        EXPECT_EQ(deleted, 0);
    };
    RenderOnce();
    EXPECT_EQ(deleted, 5);
}

} // namespace
