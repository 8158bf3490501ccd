#include <gmock/gmock.h>

#include "tests/stricthost/StandIn.h"

namespace {

using stricthost::FrameRequest;
using stricthost::FrameResult;
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<A_long> Sides(const PF_LRect& rect) {
    return {rect.left, rect.top, rect.right, rect.bottom};
}

TEST(SmartTest, OnlyTheWantedPartIsHandedOver) {
    StandIn plugin;
    plugin.before[PF_Cmd_SMART_PRE_RENDER] = [](Command& c) {
        const auto* input = static_cast<PF_PreRenderExtra*>(c.extra)->input;
        EXPECT_EQ(input->output_request.rect.left, 1);
        EXPECT_EQ(input->bitdepth, 16);
        EXPECT_EQ(c.params, nullptr);
    };
    plugin.after[PF_Cmd_SMART_PRE_RENDER] = [](Command& c) {
        const auto* extra = static_cast<PF_PreRenderExtra*>(c.extra);
        PF_CheckoutResult got = {};
        EXPECT_EQ(extra->cb->checkout_layer(c.in->effect_ref, 0, 2, &extra->input->output_request,
                                            c.in->current_time, c.in->time_step, c.in->time_scale, &got),
                  PF_Err_NONE);
        EXPECT_THAT(Sides(got.result_rect), ElementsAre(1, 3, 5, 8));
        EXPECT_THAT(Sides(got.max_result_rect), ElementsAre(-3, 2, 5, 8)); // whatever was asked for
    };
    plugin.before[PF_Cmd_SMART_RENDER] = [](Command& c) {
        EXPECT_EQ(c.in->output_origin_x, -4); // the input starts left of the output
        EXPECT_EQ(c.in->output_origin_y, -1);
    };
    const auto host = SetUpHost();
    const fxhost::Picture input = Gradient(8, 6, 16);
    FrameRequest request;
    request.input = &input;
    request.inputX = -3; // the layer's buffer covers (-3, 2) to (5, 8)
    request.inputY = 2;
    request.wanted = PF_LRect{1, 3, 20, 20};
    const FrameResult result = host->NewInstance().Render(request);
    ASSERT_EQ(result.picture.width, 4u);  // 1 to 5
    ASSERT_EQ(result.picture.height, 5u); // 3 to 8
    EXPECT_EQ(result.originX, 1);
    EXPECT_EQ(result.originY, 3);
    const fxhost::Picture whole = Inverted(input);
    for (unsigned y = 0; y < 5; ++y)
        EXPECT_TRUE(
            std::equal(result.picture.Row(y), result.picture.Row(y) + 4 * 8, whole.Row(y + 1) + 4 * 8));
    host->Finish();
    EXPECT_THAT(host->Violations(), IsEmpty());
}

TEST(SmartTest, WorldsSayWhereTheyLie) {
    StandIn plugin;
    plugin.instead[PF_Cmd_SMART_RENDER] = [](Command& c) -> PF_Err {
        const auto* cb = static_cast<PF_SmartRenderExtra*>(c.extra)->cb;
        PF_EffectWorld *input = nullptr, *output = nullptr;
        cb->checkout_layer_pixels(c.in->effect_ref, 1, &input);
        cb->checkout_output(c.in->effect_ref, &output);
        EXPECT_EQ(input->origin_x, -3);
        EXPECT_EQ(input->origin_y, 2);
        EXPECT_EQ(output->origin_x, -3);
        EXPECT_EQ(output->origin_y, 2);
        EXPECT_EQ(output->pix_aspect_ratio.num, 3);
        Invert(*input, *output, 8);
        return cb->checkin_layer_pixels(c.in->effect_ref, 1);
    };
    const auto host = SetUpHost();
    const fxhost::Picture input = Gradient(8, 6);
    FrameRequest request;
    request.input = &input;
    request.inputX = -3;
    request.inputY = 2;
    request.pixelAspect = {3, 2};
    EXPECT_EQ(host->NewInstance().Render(request).error, PF_Err_NONE);
    host->Finish();
    EXPECT_THAT(host->Violations(), IsEmpty());
}

TEST(SmartTest, AnEmptyLayerGivesEmptyRectanglesAndNoRender) {
    StandIn plugin;
    const auto host = SetUpHost();
    FrameRequest request;
    request.depth = 8;
    const FrameResult result = host->NewInstance().Render(request);
    EXPECT_EQ(result.error, PF_Err_NONE);
    EXPECT_EQ(result.picture.width, 0u);
    EXPECT_EQ(plugin.log, "gpsP");
}

TEST(SmartTest, PreRenderDataIsDeletedAfterTheFrame) {
    static int s_Deleted;
    s_Deleted = 0;
    StandIn plugin;
    int data = 5;
    plugin.after[PF_Cmd_SMART_PRE_RENDER] = [&data](Command& c) {
        auto* output = static_cast<PF_PreRenderExtra*>(c.extra)->output;
        output->pre_render_data = &data;
        output->delete_pre_render_data_func = [](void* gone) { s_Deleted += *static_cast<int*>(gone); };
    };
    plugin.before[PF_Cmd_SMART_RENDER] = [&data](Command& c) {
        EXPECT_EQ(static_cast<PF_SmartRenderExtra*>(c.extra)->input->pre_render_data, &data);
        EXPECT_EQ(s_Deleted, 0);
    };
    const auto host = SetUpHost();
    const fxhost::Picture input = Gradient(4, 4);
    FrameRequest request;
    request.input = &input;
    host->NewInstance().Render(request);
    EXPECT_EQ(s_Deleted, 5);
}

} // namespace
