#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/host/FakeHost.h"
#include "tests/support/RecordingPlugin.h"

namespace {

using testing::ElementsAre;

RecordingPlugin& Engine() {
    return RecordingPlugin::Instance();
}

// A host set up for an effect that wants three earlier frames, ten time units apart.
struct FeedbackHost : FakeHost {
    explicit FeedbackHost(A_long time) {
        SetUp();
        params[0].u.ld = input.world;
        earlierFrame = earlier.world;
        Engine().feedbackFrames = 3;
        Engine().result.assign(16, 0);
        in.current_time = time;
        in.time_step = 10;
        in.time_scale = 30;
    }
    PF_Err Render() { return Send(PF_Cmd_RENDER, nullptr, &output.world); }
    std::vector<int> UploadedIndices() const {
        std::vector<int> indices;
        for (const RecordingPlugin::Upload& upload : Engine().uploads)
            indices.push_back(static_cast<int>(upload.index));
        return indices;
    }
    FakeWorld input{2, 2, 8}, output{2, 2, 8}, earlier{2, 1, 8, 20};
};

TEST(FeedbackTest, EarlierFramesAreRenderedUpstreamAndUploaded) {
    FeedbackHost host(50);
    host.earlier.Set<std::uint8_t>(1, 0, 3, 99);
    ASSERT_EQ(host.Render(), PF_Err_NONE);
    EXPECT_THAT(host.UploadedIndices(), ElementsAre(-1, -2, -3, -4));
    EXPECT_EQ(Engine().uploads[3].bytes.at(7), 99);
    EXPECT_THAT(host.log, ElementsAre("effect", "options", "time 40/30", "frame", "effect", "options",
                                      "time 30/30", "frame", "effect", "options", "time 20/30", "frame"));
    EXPECT_EQ(host.Unreturned(), "");
}

TEST(FeedbackTest, FramesBeforeTimeZeroAreLeftOut) {
    struct Row {
        A_long time;
        std::vector<int> uploaded;
    };
    for (const Row& row : {Row{0, {-1}}, Row{9, {-1}}, Row{10, {-1, -2}}, Row{25, {-1, -2, -3}}}) {
        FeedbackHost host(row.time);
        ASSERT_EQ(host.Render(), PF_Err_NONE);
        EXPECT_EQ(host.UploadedIndices(), row.uploaded) << row.time;
    }
}

TEST(FeedbackTest, EachMissingSuiteEndsTheFrameWithThirteen) {
    for (const char* suite : {"AEGP Effect Suite", "AEGP Layer Render Options Suite", "AEGP Render Suite",
                              "AEGP PF Interface Suite", "AEGP World Suite"}) {
        FeedbackHost host(50);
        host.missing.insert(suite);
        EXPECT_EQ(host.Render(), 13) << suite;
        EXPECT_EQ(host.Unreturned(), "") << suite;
        EXPECT_EQ(Engine().lockBalance, 0) << suite;
        EXPECT_TRUE(Engine().renders.empty()) << suite;
    }
}

TEST(FeedbackTest, AHostThatCannotRenderGivesItsOwnErrorAndGetsEverythingBack) {
    for (const char* call : {"effect", "options", "set time", "frame", "receipt world", "fill out world"}) {
        FeedbackHost host(50);
        host.failing[call] = 22;
        EXPECT_EQ(host.Render(), 22) << call;
        EXPECT_EQ(host.Unreturned(), "") << call;
        EXPECT_EQ(Engine().lockBalance, 0) << call;
    }
}

TEST(FeedbackTest, AFrameOfLesserDepthIsRefused) {
    FeedbackHost host(50);
    FakeWorld deep(2, 2, 32), target(2, 2, 32);
    host.params[0].u.ld = deep.world;
    Engine().result.assign(64, 0);
    host.format = 0x32336561;
    EXPECT_EQ(host.Send(PF_Cmd_RENDER, nullptr, &target.world), PF_Err_NONE) << "one row may be any length";
    FakeWorld shallow(2, 2, 8);
    host.earlierFrame = shallow.world;
    EXPECT_EQ(host.Send(PF_Cmd_RENDER, nullptr, &target.world), PF_Err_INTERNAL_STRUCT_DAMAGED);
    EXPECT_EQ(host.Unreturned(), "");
}

} // namespace
