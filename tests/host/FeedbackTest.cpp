#include "AE_GeneralPlug.h"
#include "tests/host/TestHost.h"

namespace {

// A frame of an effect that asks for three earlier frames, ten time units apart.
struct FeedbackFrame {
    PF_Err error;
    std::vector<std::string> asked; // times that the host was asked for, as value/scale
    std::vector<int> uploaded;      // texture indices
};

FeedbackFrame RenderAt(
    A_long time, const char* missingSuite = "", unsigned depth = 8,
    const std::function<void(TestHost&)>& breakHost = [](TestHost&) {}) {
    FeedbackFrame frame;
    TestHost host(AE, [&](stricthost::Options& options) {
        options.missingSuites = {missingSuite};
        options.upstreamFrame = [&](A_long value, A_u_long scale) {
            frame.asked.push_back(std::to_string(value) + "/" + std::to_string(scale));
            Picture picture(2, 2, 8);
            picture.bytes[7] = static_cast<std::uint8_t>(value);
            return picture;
        };
    });
    Instance& instance = host.Start();
    breakHost(host);
    Engine().feedbackFrames = 3;
    FrameSpec request;
    request.time = time;
    request.timeStep = 10;
    request.timeScale = 30;
    frame.error = Render(instance, Picture(2, 2, depth), request).error;
    for (const RecordingPlugin::Upload& upload : Engine().uploads)
        frame.uploaded.push_back(static_cast<int>(upload.index));
    return frame;
}

TEST(FeedbackTest, EarlierFramesAreRenderedUpstreamAndUploadedIfNotBeforeTimeZero) {
    const FeedbackFrame frame = RenderAt(50);
    EXPECT_EQ(frame.error, PF_Err_NONE);
    EXPECT_THAT(frame.asked, ElementsAre("40/30", "30/30", "20/30"));
    EXPECT_THAT(frame.uploaded, ElementsAre(-1, -2, -3, -4));
    EXPECT_EQ(Engine().uploads[3].bytes.at(7), 20);
    for (const auto& [time, uploads] : {std::pair{0, 1u}, {9, 1u}, {10, 2u}, {25, 3u}})
        EXPECT_EQ(RenderAt(time).uploaded.size(), uploads) << time;
}

TEST(FeedbackTest, AnErrorOfTheHostIsReturnedAfterEverythingIsReleased) {
    for (const char* suite : {kAEGPEffectSuite, kAEGPLayerRenderOptionsSuite, kAEGPRenderSuite,
                              kAEGPPFInterfaceSuite, kAEGPWorldSuite})
        EXPECT_EQ(RenderAt(50, suite).error, 13) << suite;

    using Options = AEGP_LayerRenderOptionsSuite1;
    using Frames = AEGP_RenderSuite5;
    const auto expectError = [](const char* suite, auto place) {
        EXPECT_EQ(RenderAt(50, "", 8, [&](TestHost& host) { host.Replace(suite, place, Fails<22>); }).error,
                  22);
        EXPECT_TRUE(Engine().renders.empty());
    };
    expectError(kAEGPPFInterfaceSuite, &AEGP_PFInterfaceSuite1::AEGP_GetNewEffectForEffect);
    expectError(kAEGPLayerRenderOptionsSuite, &Options::AEGP_NewFromUpstreamOfEffect);
    expectError(kAEGPLayerRenderOptionsSuite, &Options::AEGP_SetTime);
    expectError(kAEGPRenderSuite, &Frames::AEGP_RenderAndCheckoutLayerFrame);
    expectError(kAEGPRenderSuite, &Frames::AEGP_GetReceiptWorld);
    expectError(kAEGPWorldSuite, &AEGP_WorldSuite3::AEGP_FillOutPFEffectWorld);
    EXPECT_EQ(RenderAt(50, "", 32).error, PF_Err_INTERNAL_STRUCT_DAMAGED)
        << "earlier frames have fewer bits than the frame";
}

} // namespace
