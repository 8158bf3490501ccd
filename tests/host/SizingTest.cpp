#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/Rects.h"
#include "host/Scaling.h"
#include "host/SequenceRecord.h"
#include "tests/host/FakeHost.h"
#include "tests/support/RecordingPlugin.h"

void PrintTo(const PF_LRect& rect, std::ostream* stream) {
    *stream << rect.left << ',' << rect.top << ',' << rect.right << ',' << rect.bottom;
}
static bool operator==(const PF_LRect& a, const PF_LRect& b) {
    return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}

namespace {

RecordingPlugin& Engine() {
    return RecordingPlugin::Instance();
}

TEST(ScalingTest, DividesNearlyRounded) {
    struct Row {
        unsigned size;
        A_long num;
        A_u_long den;
        unsigned expected;
    };
    const Row rows[] = {
        {1920, 1, 1, 1920},
        {0, 1, 1, 0},
        {5, 1, 2, 2},                   // (5 + 0) / 2
        {6, 1, 4, 1},                   // (6 + 1) / 4
        {7, 1, 4, 2},                   // (7 + 1) / 4
        {100, 10, 11, 91},              // (1000 + 4) / 11
        {30000, 768000, 702000, 32821}, // beyond 32 bits on the way
        {9, 1, 0, 9},
        {9, -1, 2, 9},
    };
    for (const Row& row : rows)
        EXPECT_EQ(Adapter::Scaled(row.size, {row.num, row.den}), row.expected)
            << row.size << row.num << row.den;
}

TEST(ScalingTest, UnionsIgnoreEmptyRectangles) {
    PF_LRect sum = {5, 5, 5, 9};
    const PF_LRect a = {-1, 0, 10, 10}, b = {3, -4, 12, 5}, empty = {20, 20, 20, 30};
    Adapter::UnionLRect(&empty, &sum);
    EXPECT_EQ(sum, (PF_LRect{5, 5, 5, 9}));
    Adapter::UnionLRect(&a, &sum);
    EXPECT_EQ(sum, a);
    Adapter::UnionLRect(&b, &sum);
    EXPECT_EQ(sum, (PF_LRect{-1, -4, 12, 10}));
    Adapter::UnionLRect(&empty, &sum);
    EXPECT_EQ(sum, (PF_LRect{-1, -4, 12, 10}));
}

struct FrameRow {
    const char* what;
    FakeHost::Kind kind;
    A_long width, height; // of the layer as the host sees it
    PF_RationalScale dsx, dsy, par;
    unsigned outWidth, outHeight; // what the engine wants, 0: the same
    A_long expectedWidth, expectedHeight, expectedH, expectedV;
    unsigned frameWidth, frameHeight; // Premiere Pro's frame data
};

TEST(FrameSetupTest, SumsForBothHosts) {
    constexpr auto AE = FakeHost::Kind::AfterEffects;
    constexpr auto Pr = FakeHost::Kind::Premiere;
    const FrameRow rows[] = {
        {"same size at full resolution", AE, 640, 361, {1, 1}, {1, 1}, {1, 1}, 0, 0, 640, 361, 0, 0, 0, 0},
        {"same size, wide pixels", AE, 640, 361, {1, 1}, {1, 1}, {3, 2}, 0, 0, 640, 361, 0, 0, 0, 0},
        // 320 / 2 - 640 / 2 and 180 / 2 - 361 / 2; (361 + 0) / 2 = 180
        {"same size at half", AE, 640, 361, {1, 2}, {1, 2}, {1, 1}, 0, 0, 320, 180, -160, -90, 0, 0},
        {"larger", AE, 640, 361, {1, 1}, {1, 1}, {1, 1}, 741, 461, 741, 461, 50, 50, 0, 0},
        // 600 * 3 / 2 = 900
        {"wide pixels count once resized",
         AE,
         640,
         360,
         {1, 1},
         {1, 1},
         {3, 2},
         600,
         360,
         900,
         360,
         130,
         0,
         0,
         0},
        {"same size", Pr, 640, 360, {1, 1}, {1, 1}, {1, 1}, 0, 0, 640, 360, 0, 0, 640, 360},
        {"same size at half", Pr, 640, 360, {1, 2}, {1, 2}, {3, 2}, 0, 0, 640, 360, 0, 0, 320, 180},
        {"larger", Pr, 640, 360, {1, 1}, {1, 1}, {1, 1}, 801, 360, 801, 360, 80, 0, 801, 360},
        // 800 * 3 / 2 = 1200, 640 * 3 / 2 = 960
        {"larger, wide pixels", Pr, 640, 360, {1, 1}, {1, 1}, {3, 2}, 800, 360, 1200, 360, 120, 0, 1200, 360},
        // 800 / 2 * 3 / 2 = 600, 640 / 2 * 3 / 2 = 480; smaller than the output, which stays
        {"larger at half, wide pixels",
         Pr,
         640,
         360,
         {1, 2},
         {1, 2},
         {3, 2},
         800,
         360,
         640,
         360,
         0,
         0,
         600,
         180},
        {"smaller", Pr, 640, 360, {1, 1}, {1, 1}, {1, 1}, 320, 180, 640, 360, 0, 0, 320, 180},
    };
    for (const FrameRow& row : rows) {
        FakeHost host(row.kind);
        host.SetUp();
        host.params[0].u.ld.width = host.in.width = row.width;
        host.params[0].u.ld.height = host.in.height = row.height;
        host.in.downsample_x = row.dsx;
        host.in.downsample_y = row.dsy;
        host.in.pixel_aspect_ratio = row.par;
        Engine().outWidth = row.outWidth;
        Engine().outHeight = row.outHeight;
        ASSERT_EQ(host.Send(PF_Cmd_FRAME_SETUP), PF_Err_NONE) << row.what;
        EXPECT_EQ(host.out.width, row.expectedWidth) << row.what;
        EXPECT_EQ(host.out.height, row.expectedHeight) << row.what;
        EXPECT_EQ(host.out.origin.h, row.expectedH) << row.what;
        EXPECT_EQ(host.out.origin.v, row.expectedV) << row.what;
        EXPECT_EQ(Engine().lockBalance, 0) << row.what;
        const auto data = reinterpret_cast<Adapter::FrameData**>(host.in.frame_data);
        ASSERT_EQ(data != nullptr, row.kind == Pr) << row.what;
        if (data) {
            EXPECT_EQ((*data)->width, row.frameWidth) << row.what;
            EXPECT_EQ((*data)->height, row.frameHeight) << row.what;
        }
        const int handles = host.LiveHandles();
        EXPECT_EQ(host.Send(PF_Cmd_FRAME_SETDOWN), PF_Err_NONE);
        EXPECT_EQ(host.LiveHandles(), handles - (data ? 1 : 0)) << row.what;
        EXPECT_EQ(host.in.frame_data, nullptr) << row.what;
        EXPECT_EQ(host.Unreturned(), "") << row.what;
    }
}

TEST(FrameSetupTest, TheFrameIsNotLockedInAfterEffects13_0And13_1) {
    struct Row {
        FakeHost::Kind kind;
        A_short major, minor;
        unsigned locks;
    };
    for (const Row& row :
         {Row{FakeHost::Kind::AfterEffects, 13, 0, 0}, Row{FakeHost::Kind::AfterEffects, 13, 1, 0},
          Row{FakeHost::Kind::AfterEffects, 13, 2, 1}, Row{FakeHost::Kind::AfterEffects, 12, 1, 1},
          Row{FakeHost::Kind::Premiere, 13, 0, 1}}) {
        FakeHost host(row.kind);
        host.SetUp();
        host.in.version.major = row.major;
        host.in.version.minor = row.minor;
        host.Send(PF_Cmd_FRAME_SETUP);
        EXPECT_EQ(Engine().Count("lockFrame"), row.locks) << row.major << '.' << row.minor;
        Engine().calls.clear();
        host.SmartPreRender();
        EXPECT_EQ(Engine().Count("lockFrame"), row.locks) << row.major << '.' << row.minor;
        EXPECT_EQ(Engine().Count("releaseFrame"), row.locks) << row.major << '.' << row.minor;
    }
    FakeHost refused;
    refused.SetUp();
    Engine().lockWorks = false;
    EXPECT_EQ(refused.Send(PF_Cmd_FRAME_SETUP), PF_Err_NONE);
    EXPECT_EQ(Engine().Count("preRender 0 0"), 1u);
    EXPECT_EQ(Engine().Count("releaseFrame"), 0u);
}

TEST(FrameSetupTest, CompositionSizeComesFromTheHostOrTheLayer) {
    const auto told = [](FakeHost& host) {
        host.SetUp();
        host.Send(PF_Cmd_FRAME_SETUP);
        EXPECT_EQ(host.Unreturned(), "");
        return *std::find_if(Engine().calls.begin(), Engine().calls.end(),
                             [](const std::string& call) { return call.starts_with("setCompositionSize"); });
    };
    for (const auto kind : {FakeHost::Kind::AfterEffects, FakeHost::Kind::Premiere}) {
        FakeHost host(kind);
        EXPECT_EQ(told(host), "setCompositionSize 1280 720 2");
    }
    for (const char* suite :
         {"AEGP PF Interface Suite", "AEGP Layer Suite", "AEGP Comp Suite", "AEGP Item Suite"}) {
        FakeHost host;
        host.missing.insert(suite);
        EXPECT_EQ(told(host), "setCompositionSize 640 360 1") << suite;
    }
    for (const char* suite : {"PF Utility Suite", "MediaCore Sequence Info Suite"}) {
        FakeHost host(FakeHost::Kind::Premiere);
        host.missing.insert(suite);
        EXPECT_EQ(told(host), "setCompositionSize 640 360 1") << suite;
    }
    for (const char* call : {"effect layer", "timeline"}) {
        FakeHost host(call[0] == 't' ? FakeHost::Kind::Premiere : FakeHost::Kind::AfterEffects);
        host.failing[call] = 1;
        EXPECT_EQ(told(host), "setCompositionSize 640 360 1") << call;
    }
    FakeHost flat;
    flat.aspectDen = 0;
    EXPECT_EQ(told(flat), "setCompositionSize 1280 720 1");
}

struct PreRenderRow {
    const char* what;
    PF_LRect input, request;
    unsigned outWidth, outHeight;
    PF_LRect result, maximum;
    int flags;
};

TEST(SmartPreRenderTest, Rectangles) {
    const PF_LRect before = {0, 0, 10, 10}; // what the output holds already
    const PreRenderRow rows[] = {
        {"inside on all sides", {2, 2, 6, 6}, {2, 2, 7, 7}, 0, 0, {0, 0, 10, 10}, {0, 0, 10, 10}, 0},
        {"touches on the right", {2, 2, 7, 6}, {2, 2, 7, 7}, 0, 0, {0, 0, 10, 10}, {0, 0, 10, 10}, 1},
        {"reaches out on the left", {-3, 2, 6, 6}, {-2, 2, 7, 7}, 0, 0, {-3, 0, 10, 10}, {-3, 0, 10, 10}, 1},
        {"empty request", {0, 0, 20, 5}, {0, 0, 0, 0}, 0, 0, {0, 0, 20, 10}, {0, 0, 20, 10}, 1},
        {"empty input", {0, 0, 0, 0}, {0, 0, 8, 8}, 0, 0, {0, 0, 10, 10}, {0, 0, 10, 10}, 0},
        // 3 + 5/2 - 8/2 = 1, 4 + 7/2 - 3/2 = 6
        {"resized", {3, 4, 8, 11}, {-99, -99, 99, 99}, 8, 3, {1, 6, 9, 9}, {0, 0, 10, 10}, 1},
        {"enlarged", {0, 0, 10, 10}, {-99, -99, 99, 99}, 16, 13, {-3, -1, 13, 12}, {-3, -1, 13, 12}, 1},
    };
    for (const PreRenderRow& row : rows) {
        FakeHost host;
        host.SetUp();
        host.inputRect = row.input;
        host.preRenderInput.output_request.rect = row.request;
        host.preRenderOutput.result_rect = host.preRenderOutput.max_result_rect = before;
        Engine().outWidth = row.outWidth;
        Engine().outHeight = row.outHeight;
        EXPECT_EQ(host.SmartPreRender(), PF_Err_NONE);
        EXPECT_EQ(host.preRenderOutput.result_rect, row.result) << row.what;
        EXPECT_EQ(host.preRenderOutput.max_result_rect, row.maximum) << row.what;
        EXPECT_EQ(host.preRenderOutput.flags, row.flags) << row.what;
        ASSERT_EQ(host.layerCheckouts.size(), 2u);
        EXPECT_EQ(host.layerCheckouts[0].second.rect, (PF_LRect{0, 0, 0, 0}));
        EXPECT_EQ(host.layerCheckouts[1].second.rect, row.input) << row.what;
        EXPECT_EQ(Engine().lockBalance, 0);
    }
}

TEST(SmartPreRenderTest, BothRequestsFollowTheHosts) {
    FakeHost host;
    host.SetUp();
    PF_RenderRequest& request = host.preRenderInput.output_request;
    request.field = PF_Field_LOWER;
    request.channel_mask = PF_ChannelMask_ALPHA;
    request.reserved[2] = 5;
    ASSERT_EQ(host.SmartPreRender(), PF_Err_NONE);
    ASSERT_EQ(host.layerCheckouts.size(), 2u);
    EXPECT_EQ(host.layerCheckouts[0].first, 1193045);
    EXPECT_EQ(host.layerCheckouts[1].first, 1193046);
    for (const auto& [id, asked] : host.layerCheckouts) {
        EXPECT_EQ(asked.field, PF_Field_LOWER);
        EXPECT_EQ(asked.channel_mask, 15);
        EXPECT_EQ(asked.preserve_rgb_of_zero_alpha, 1);
        EXPECT_EQ(asked.reserved[2], 5);
    }
}

TEST(SmartPreRenderTest, AFailedFirstCheckoutStillAsksTheEngine) {
    FakeHost host;
    host.SetUp();
    host.failing["checkout_layer"] = 513;
    EXPECT_EQ(host.SmartPreRender(), 513);
    EXPECT_EQ(host.layerCheckouts.size(), 1u);
    EXPECT_EQ(Engine().Count("preRender 0 0"), 1u);
    EXPECT_EQ(Engine().lockBalance, 0);
}

TEST(SmartPreRenderTest, WithoutAnInstanceTheInputPassesThrough) {
    FakeHost host;
    host.inputRect = {0, 0, 8, 8};
    EXPECT_EQ(host.SmartPreRender(), PF_Err_NONE);
    EXPECT_EQ(host.preRenderOutput.result_rect, host.inputRect);
    EXPECT_EQ(host.layerCheckouts.size(), 2u);
    EXPECT_TRUE(Engine().calls.empty());
}

} // namespace
