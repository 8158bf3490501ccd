#include <sstream>

#include "AE_GeneralPlug.h"
#include "PrSDKAESupport.h"
#include "PrSDKSequenceInfoSuite.h"
#include "host/Geometry.h"
#include "tests/host/TestHost.h"

namespace {

std::vector<A_long> Edges(const PF_LRect& rect) {
    return {rect.left, rect.top, rect.right, rect.bottom};
}

TEST(ScalingTest, UnionsIgnoreEmptyRectangles) {
    PF_LRect sum = {5, 5, 5, 9};
    const PF_LRect empty = {20, 20, 20, 30};
    const PF_LRect rects[] = {empty, {-1, 0, 10, 10}, {3, -4, 12, 5}, empty, {4, -8, 5, 20}, {0, 0, 1, 1}};
    for (const PF_LRect& rect : rects)
        Adapter::UnionLRect(&rect, &sum);
    EXPECT_THAT(Edges(sum), ElementsAre(-1, -8, 12, 20));
}

TEST(FrameSetupTest, TheOutputIsSizedAndCentredByTheRulesOfEachHost) {
    struct Row {
        const char* name;
        Personality personality;
        A_long width, height;              // of the layer, as the host describes it
        A_u_long downsampleX, downsampleY; // denominators of the scales
        PF_RationalScale aspect;
        unsigned wantedWidth, wantedHeight; // by the engine
        const char* expected; // size and origin of the output; in Premiere Pro also the frame data
    };
    const Row rows[] = {
        {"same size at full resolution", Plain, 640, 361, 1, 1, {3, 2}, 640, 361, "640x361 0,0"},
        // 320/2 - 640/2, 90/2 - 361/2
        {"same size at 1/2 and 1/4", Plain, 640, 361, 2, 4, {1, 1}, 640, 361, "320x90 -160,-135"},
        {"larger", Plain, 640, 361, 1, 1, {1, 1}, 741, 461, "741x461 50,50"},
        {"narrower with wide pixels", Plain, 640, 360, 1, 1, {3, 2}, 600, 360, "900x360 130,0"}, // 600 * 3/2
        {"Premiere, same size", Pr, 640, 360, 1, 1, {1, 1}, 640, 360, "640x360 0,0 640x360"},
        {"Premiere, same size at 1/2", Pr, 640, 360, 2, 2, {3, 2}, 640, 360, "640x360 0,0 320x180"},
        {"Premiere, wider", Pr, 640, 360, 1, 1, {1, 1}, 801, 360, "801x360 80,0 801x360"},
        {"Premiere, narrower and higher", Pr, 640, 360, 1, 1, {1, 1}, 320, 401, "320x401 -160,20 320x401"},
        // 800 * 3/2, 640 * 3/2 = 960
        {"Premiere, wide pixels", Pr, 640, 360, 1, 1, {3, 2}, 800, 360, "1200x360 120,0 1200x360"},
        // 800/2 * 3/2 is less than the output.
        {"Premiere, wider at 1/2", Pr, 640, 360, 2, 2, {3, 2}, 800, 360, "640x360 0,0 600x180"},
        {"Premiere, smaller", Pr, 640, 360, 1, 1, {1, 1}, 320, 180, "640x360 0,0 320x180"},
        {"almost rounded", Plain, 6, 7, 4, 4, {1, 1}, 6, 7, "1x2 -3,-2"}, // (6 + 1) / 4, (7 + 1) / 4
        {"scale without denominator", Plain, 6, 7, 0, 0, {1, 1}, 6, 7, "6x7 0,0"},
        {"scale without numerator", Plain, 8, 8, 1, 1, {0, 2}, 9, 8, "9x8 0,0"},
        {"negative layer, which counts as empty", Plain, -4, -3, 1, 1, {1, 1}, 5, 6, "5x6 2,3"},
        {"product beyond 32 bits", Plain, 30000, 9, 1, 1, {768000, 702000}, 30001, 9, "32822x9 1411,0"},
    };
    Adapter::FrameData old = {};
    Adapter::FrameData* master = &old;
    const auto stale = reinterpret_cast<PF_Handle>(&master);
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        TestHost host(row.personality);
        Instance& instance = host.Start();
        Engine().outWidth = row.wantedWidth;
        Engine().outHeight = row.wantedHeight;
        host.before = [&](Command& command) {
            PF_LayerDef& layer = command.params[0]->u.ld;
            command.in.width = command.out.width = layer.width = row.width;
            command.in.height = command.out.height = layer.height = row.height;
            command.in.downsample_x = {1, row.downsampleX};
            command.in.downsample_y = {1, row.downsampleY};
            command.in.pixel_aspect_ratio = row.aspect;
            command.out.frame_data = stale; // from an earlier frame
        };
        host.after = [&](Command& command) {
            const PF_OutData& out = command.out;
            std::ostringstream text;
            text << out.width << 'x' << out.height << ' ' << out.origin.h << ',' << out.origin.v;
            if (const auto data = reinterpret_cast<Adapter::FrameData**>(out.frame_data))
                text << ' ' << (*data)->width << 'x' << (*data)->height;
            EXPECT_EQ(text.str(), row.expected);
            host.before = host.after = nullptr; // the rest of the frame is the host's own
        };
        EXPECT_EQ(Render(instance).error, PF_Err_NONE);
    }
}

TEST(FrameSetupTest, InstanceAndParametersAreSelectedBeforeTheEngineIsAsked) {
    for (const auto personality : {AE, Plain, Pr}) {
        TestHost host(personality);
        Instance& instance = host.Start({Declared(Parameter::FLOAT)});
        host.after = [&](Command&) {
            EXPECT_THAT(Engine().calls,
                        ElementsAre("lockFrame", "setSequenceData 1", "setCompositionSize 1 1 1",
                                    "getNumParams", "getParamDesc", "getParamDesc", "setParam 0",
                                    "preRender 1 1", "releaseFrame"));
            host.after = nullptr;
        };
        EXPECT_EQ(Render(instance).error, PF_Err_NONE);
    }
}

TEST(FrameSetupTest, WithoutInstanceDataTheSizeStaysAndPremiereProStillGetsFrameData) {
    for (const auto personality : {Plain, Pr}) {
        TestHost host(personality);
        Instance& instance = host.Start();
        host.before = [](Command& command) {
            command.in.sequence_data = nullptr;
            command.in.width = 9;
            command.in.height = 6;
            command.in.downsample_x = command.in.downsample_y = {1, 2};
        };
        host.after = [&](Command& command) {
            EXPECT_EQ(command.out.width, 1);
            const auto data = reinterpret_cast<Adapter::FrameData**>(command.out.frame_data);
            ASSERT_EQ(data != nullptr, personality == Pr);
            if (data) {
                EXPECT_EQ((*data)->width, 4u);
                EXPECT_EQ((*data)->height, 3u);
            }
            host.after = nullptr;
        };
        EXPECT_EQ(Render(instance).error, PF_Err_NONE);
    }
}

prSuiteError ShiftedFrame(PrTimelineID, prRect* rect) {
    rect->left = rect->top = 10;
    rect->right = 1290;
    rect->bottom = 730;
    return 0;
}

// Renders frames of one pixel in a composition of 1280 by 720. Returns how often the engine received `size`.
unsigned TimesReceived(const char* size, Personality personality, const char* missing = "",
                       A_u_long aspectDen = 1, bool fails = false,
                       const std::map<std::string, TestHost::Number>& onlyNumber = {}) {
    TestHost host(personality, [&](auto& options) {
        options.missingSuites = {missing};
        options.compWidth = 1280;
        options.compHeight = 720;
        options.compAspect = {2, aspectDen};
    });
    host.onlyNumber = onlyNumber;
    Instance& instance = host.Start();
    host.Replace(kPrSDKSequenceInfoSuite, &PrSDKSequenceInfoSuite::GetFrameRect, ShiftedFrame);
    if (fails) {
        host.Replace(kAEGPPFInterfaceSuite, &AEGP_PFInterfaceSuite1::AEGP_GetEffectLayer, Fails<1>);
        host.Replace(kPFUtilitySuite, &PF_UtilitySuite::GetContainingTimelineID, Fails<1>);
    }
    EXPECT_EQ(Render(instance).error, PF_Err_NONE);
    return Engine().Count(std::string("setCompositionSize ") + size);
}

TEST(FrameSetupTest, CompositionSizeComesFromTheHostOrTheLayer) {
    for (const auto personality : {AE, Pr}) {
        EXPECT_EQ(TimesReceived("1280 720 2", personality), 2u) << "for sizing and for rendering";
        EXPECT_EQ(TimesReceived("1280 720 1", personality, "", 0), 2u);
        EXPECT_EQ(TimesReceived("1 1 1", personality, "", 1, true), 2u);
    }
    for (const std::int32_t number : {5, 6, 9})
        EXPECT_EQ(TimesReceived("1280 720 2", Pr, "", 1, false, {{kPrSDKSequenceInfoSuite, {number, 6}}}), 2u)
            << number;
    for (std::int32_t number = 3; number <= 13; ++number)
        EXPECT_EQ(TimesReceived("1280 720 2", Pr, "", 1, false, {{kPFUtilitySuite, {number, 9}}}), 2u)
            << number;
    for (const char* suite : {kAEGPPFInterfaceSuite, kAEGPLayerSuite, kAEGPCompSuite, kAEGPItemSuite})
        EXPECT_EQ(TimesReceived("1 1 1", AE, suite), 2u) << suite;
    for (const char* suite : {kPFUtilitySuite, kPrSDKSequenceInfoSuite})
        EXPECT_EQ(TimesReceived("1 1 1", Pr, suite), 2u) << suite;
}

TEST(SmartPreRenderTest, ResultRectanglesFollowTheInputAndTheEnginesSize) {
    struct Row {
        const char* name;
        PF_LRect input, request;
        unsigned wantedWidth, wantedHeight; // by the engine; 0 for the input's size
        PF_LRect result;
        bool extraPixels;
    };
    const Row rows[] = {
        {"inside the request", {2, 2, 6, 6}, {2, 2, 7, 7}, 0, 0, {2, 2, 6, 6}, false},
        {"touches the right edge", {2, 2, 7, 6}, {2, 2, 7, 7}, 0, 0, {2, 2, 7, 6}, true},
        {"touches the bottom edge", {2, 2, 6, 7}, {2, 2, 7, 7}, 0, 0, {2, 2, 6, 7}, true},
        {"beyond the left edge", {-3, 2, 6, 6}, {-2, 2, 7, 7}, 0, 0, {-3, 2, 6, 6}, true},
        {"beyond the top edge", {2, -3, 6, 6}, {2, -2, 7, 7}, 0, 0, {2, -3, 6, 6}, true},
        {"empty request", {0, 0, 20, 5}, {0, 0, 0, 0}, 0, 0, {0, 0, 20, 5}, true},
        {"empty input", {0, 0, 0, 0}, {0, 0, 8, 8}, 0, 0, {0, 0, 0, 0}, false},
        // 3 + 5/2 - 8/2, 4 + 7/2 - 3/2
        {"wider and lower", {3, 4, 8, 11}, {-9, -9, 99, 99}, 8, 3, {1, 6, 9, 9}, true},
        {"larger", {0, 0, 10, 10}, {-9, -9, 99, 99}, 16, 13, {-3, -1, 13, 12}, true},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        TestHost host;
        Instance& instance = host.Start();
        Engine().outWidth = row.wantedWidth;
        Engine().outHeight = row.wantedHeight;
        host.after = [&](Command& command) {
            const PF_PreRenderOutput& output = *static_cast<PF_PreRenderExtra*>(command.extra)->output;
            EXPECT_EQ(Edges(output.result_rect), Edges(row.result));
            EXPECT_EQ(Edges(output.max_result_rect), Edges(row.result));
            EXPECT_EQ(output.flags, row.extraPixels ? PF_RenderOutputFlag_RETURNS_EXTRA_PIXELS : 0);
            host.after = nullptr;
        };
        FrameSpec request;
        request.inputX = row.input.left;
        request.inputY = row.input.top;
        request.wanted = row.request;
        const auto extent = [](A_long from, A_long to) { return static_cast<unsigned>(to - from); };
        const Picture input(extent(row.input.left, row.input.right), extent(row.input.top, row.input.bottom),
                            8);
        EXPECT_EQ(Render(instance, input, request).error, PF_Err_NONE);
    }
}

PF_LRect s_InputRect;

PF_Err AnswerWithInputRect(PF_ProgPtr, PF_ParamIndex, A_long, const PF_RenderRequest*, A_long, A_long,
                           A_u_long, PF_CheckoutResult* result) {
    result->max_result_rect = s_InputRect;
    return PF_Err_NONE;
}

TEST(SmartPreRenderTest, LargestResultGrowsFromWhatTheHostSetAndNoSumOverflows) {
    constexpr A_long huge = 2000000000, most = 2147483647;
    struct Row {
        const char* name;
        PF_LRect input, preset;
        unsigned wantedWidth, wantedHeight; // by the engine; 0 for the input's size
        PF_LRect result, maximum;
    };
    constexpr PF_LRect rightEdge = {1500000001, 0, most, 2}, swapped = {huge - 1, 4, huge + 1, 6};
    const Row rows[] = {
        {"same size", {0, 0, 4, 4}, {-5, 1, 2, 3}, 0, 0, {0, 0, 4, 4}, {-5, 0, 4, 4}},
        {"new size", {0, 0, 4, 4}, {-5, 1, 2, 3}, 6, 2, {-1, 1, 5, 3}, {-5, 1, 5, 3}},
        {"huge input", {-huge, -huge, huge, huge}, {}, 10, 20, {-5, -10, 5, 10}, {-5, -10, 5, 10}},
        {"beyond the largest number", {huge, 0, huge + 2, 2}, {}, 1000000000, 2, rightEdge, rightEdge},
        {"edges in the wrong order", {huge, 5, -huge, 2}, {}, 2, 2, swapped, swapped},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        TestHost host;
        Instance& instance = host.Start();
        Engine().outWidth = row.wantedWidth;
        Engine().outHeight = row.wantedHeight;
        s_InputRect = row.input;
        PF_PreRenderOutput output = {};
        output.max_result_rect = row.preset;
        PF_PreRenderInput input = {};
        PF_PreRenderCallbacks callbacks = {};
        callbacks.checkout_layer = AnswerWithInputRect;
        PF_PreRenderExtra extra = {};
        extra.input = &input;
        extra.output = &output;
        extra.cb = &callbacks;
        EXPECT_EQ(TestHost::Send(PF_Cmd_SMART_PRE_RENDER, instance, &extra), PF_Err_NONE);
        EXPECT_EQ(Edges(output.result_rect), Edges(row.result));
        EXPECT_EQ(Edges(output.max_result_rect), Edges(row.maximum));
    }
}

std::vector<PF_RenderRequest> s_Requests;
std::vector<A_long> s_IdsAndTimes; // of the checkouts: layer, id, time, step, scale

TEST(SmartPreRenderTest, BothCheckoutsCopyTheHostsRequest) {
    TestHost host;
    Instance& instance = host.Start();
    s_Requests.clear();
    s_IdsAndTimes.clear();
    host.before = [](Command& command) {
        const auto& extra = *static_cast<PF_PreRenderExtra*>(command.extra);
        extra.input->output_request.field = PF_Field_LOWER;
        extra.input->output_request.channel_mask = PF_ChannelMask_ALPHA;
        extra.cb->checkout_layer = [](PF_ProgPtr, PF_ParamIndex layer, A_long id,
                                      const PF_RenderRequest* request, A_long time, A_long step,
                                      A_u_long scale, PF_CheckoutResult* result) -> PF_Err {
            for (const A_long number : {layer, id, time, step, static_cast<A_long>(scale)})
                s_IdsAndTimes.push_back(number);
            s_Requests.push_back(*request);
            result->max_result_rect = {3, 4, 3, 9}; // nothing to render
            return PF_Err_NONE;
        };
    };
    FrameSpec frame;
    frame.time = 30;
    frame.timeStep = 2;
    frame.timeScale = 24;
    ASSERT_EQ(Render(instance, Picture(1, 1, 8), frame).error, PF_Err_NONE);
    ASSERT_EQ(s_Requests.size(), 2u);
    EXPECT_THAT(s_IdsAndTimes, ElementsAre(0, 0x123455, 30, 2, 24, 0, 0x123456, 30, 2, 24));
    EXPECT_EQ(Edges(s_Requests[0].rect), Edges({})) << "the layer's extent is not known yet";
    EXPECT_THAT(Edges(s_Requests[1].rect), ElementsAre(3, 4, 3, 9));
    for (const PF_RenderRequest& request : s_Requests)
        EXPECT_THAT(
            (std::vector<int>{request.field, request.channel_mask, request.preserve_rgb_of_zero_alpha}),
            ElementsAre(PF_Field_LOWER, PF_ChannelMask_ARGB, 1));
}

} // namespace
