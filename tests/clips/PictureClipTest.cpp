#include <csignal>
#include <sys/resource.h>
#include <sys/wait.h>

#include "guard/Guard.h"
#include "guard/Stage.h"
#include "tests/clips/ClipFixture.h"
#include "toolkit/Errors.h"
#include "toolkit/PictureFile.h"

namespace {

using namespace fxhost;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class PictureClipTest : public ClipFixture {
protected:
    void writeInputs(long first, long last, unsigned depth = 8, const char* ending = ".png") {
        for (long number = first; number <= last; ++number)
            WritePicture(input(number, ending), SomePicture(7, 5, depth, number));
    }
    std::string input(long number, const char* ending = ".png") const {
        return at("in_" + std::to_string(number) + ending);
    }
    std::vector<std::string> outputs() const {
        std::vector<std::string> found;
        for (const auto& name : names())
            if (!name.starts_with("in_") && !name.ends_with(".record") &&
                name.find(".lock") == std::string::npos)
                found.push_back(name);
        return found;
    }
};

TEST_F(PictureClipTest, EveryFrameIsRenderedToTheFileOfItsNumber) {
    writeInputs(9, 11);
    EXPECT_EQ(run({}, "in_%d.png", "out_####.png"), ExitOk);
    ASSERT_THAT(outputs(), ElementsAre("out_0009.png", "out_0010.png", "out_0011.png"));
    for (long number : {9L, 10L, 11L}) {
        const Picture before = SomePicture(7, 5, 8, number);
        const Picture after = ReadPicture(at(outputs()[static_cast<std::size_t>(number - 9)]), std::nullopt);
        for (std::size_t i = 0; i < before.bytes.size(); ++i)
            ASSERT_EQ(after.bytes[i], i % 4 ? 255 - before.bytes[i] : before.bytes[i]);
    }
}

TEST_F(PictureClipTest, PicturesOf16BitsAndFloatKeepTheirDepth) {
    for (const auto& [depth, ending] : {std::pair{16u, ".png"}, {16u, ".tif"}, {32u, ".exr"}}) {
        writeInputs(1, 2, depth, ending);
        EXPECT_EQ(run({}, std::string("in_#") + ending, std::string("out_#") + ending), ExitOk);
        const Picture after = ReadPicture(at(std::string("out_2") + ending), std::nullopt);
        EXPECT_EQ(after.depth, depth) << ending;
        const Picture before = SomePicture(7, 5, depth, 2);
        if (depth == 16) {
            EXPECT_EQ(after.bytes, before.bytes) << ending;
            continue;
        }
        // EXR stores premultiplied colours, which rounds them.
        for (std::size_t i = 0; i < before.bytes.size() / sizeof(float); ++i)
            EXPECT_FLOAT_EQ(reinterpret_cast<const float*>(after.bytes.data())[i],
                            reinterpret_cast<const float*>(before.bytes.data())[i]);
    }
}

TEST_F(PictureClipTest, TimesAndKeyframesFollowTheFrameNumber) {
    writeInputs(101, 104);
    m_Settings = {"Amount=0:0, 4:8, 1s:0"};
    ClipOptions options;
    options.fps = "8";
    const auto times = [&] {
        m_Renderer.times.clear();
        EXPECT_EQ(run(options, "in_###.png", "out_###.png"), ExitOk);
        return m_Renderer.times;
    };
    EXPECT_THAT(times(), ElementsAre(0, 0.125, 0.25, 0.375));
    EXPECT_THAT(m_Renderer.amounts, ElementsAre(0, 2, 4, 6));
    options.frames = "102-104x2"; // A part of the clip has the same times as in the whole clip.
    EXPECT_THAT(times(), ElementsAre(0.125, 0.375));
    options.zeroFrame = 100;
    m_Request.time = 10;
    EXPECT_THAT(times(), ElementsAre(10.25, 10.5));
}

TEST_F(PictureClipTest, ShardsTogetherRenderEachFrameOnce) {
    writeInputs(1, 8);
    ClipOptions options;
    for (const char* shard : {"3/3", "1/3", "2/3"}) {
        options.shard = shard;
        EXPECT_EQ(run(options, "in_#.png", "out_#.png"), ExitOk);
        EXPECT_EQ(exists("out_1.png"), shard[0] != '3') << "the third takes 3 and 6";
    }
    EXPECT_EQ(outputs().size(), 8u);
    EXPECT_EQ(m_Renderer.times.size(), 8u);
}

TEST_F(PictureClipTest, ResumeAfterAKillRendersOnlyTheMissingFrames) {
    writeInputs(1, 30);
    EXPECT_EQ(run({}, "in_%d.png", "whole_%d.png"), ExitOk);
    int frame = 0;
    m_Renderer.beforeFrame = [&] {
        if (++frame == 17)
            raise(SIGKILL);
    };
    EXPECT_TRUE(WIFSIGNALED(runInChild({}, "in_%d.png", "out_%d.png")));
    m_Renderer.beforeFrame = [] {};
    m_Renderer.times.clear();
    std::filesystem::copy_file(at("in_1.png"), at(".out_17.4711.png")); // as a killed writer leaves it
    ClipOptions options;
    options.resume = true;
    EXPECT_EQ(run(options, "in_%d.png", "out_%d.png"), ExitOk);
    EXPECT_LT(m_Renderer.times.size(), 30u);
    for (int number = 1; number <= 30; ++number)
        EXPECT_EQ(bytes("out_" + std::to_string(number) + ".png"),
                  bytes("whole_" + std::to_string(number) + ".png"));
    EXPECT_FALSE(outputs().front().starts_with('.'));

    // Nothing is left to do, except for a file that is not a picture.
    std::filesystem::resize_file(at("out_5.png"), 3);
    m_Renderer.times.clear();
    EXPECT_EQ(run(options, "in_%d.png", "out_%d.png"), ExitOk);
    EXPECT_EQ(m_Renderer.times.size(), 1u);
    EXPECT_EQ(bytes("out_5.png"), bytes("whole_5.png"));
}

TEST_F(PictureClipTest, MissingPicturesAreAnErrorAtOnceOrReplacedOrLeftOut) {
    for (const long number : {2L, 3L, 6L})
        writeInputs(number, number);
    ClipOptions options;
    options.frames = "1-";
    EXPECT_THAT([&] { run(options, "in_#.png", "out_#.png"); },
                Says<WrongUse>("in_1.png: no such file", "2 more files (frames 1, 4-5)", "--missing"));
    EXPECT_THAT(outputs(), IsEmpty()); // found before the first frame
    const auto rendered = [&](MissingFrames mode, long number) {
        options.missing = mode;
        testing::internal::CaptureStderr();
        EXPECT_EQ(run(options, "in_#.png", "out_#.png"), ExitOk);
        EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("3 frames are missing (1, 4-5)"));
        return ReadPicture(at("out_" + std::to_string(number) + ".png"), std::nullopt).bytes;
    };
    rendered(MissingFrames::Skip, 2);
    EXPECT_THAT(outputs(), ElementsAre("out_2.png", "out_3.png", "out_6.png"));
    const auto second = rendered(MissingFrames::Hold, 2), third = rendered(MissingFrames::Hold, 3);
    EXPECT_EQ(rendered(MissingFrames::Hold, 1), second);
    EXPECT_EQ(rendered(MissingFrames::Hold, 5), third);
    std::vector<std::uint8_t> inverted(7 * 5 * 4, 255); // transparent black, of which colours are inverted
    for (std::size_t i = 0; i < inverted.size(); i += 4)
        inverted[i] = 0;
    EXPECT_EQ(rendered(MissingFrames::Black, 4), inverted);
    // A frame that arrives later is rendered by --resume, and only that one.
    writeInputs(4, 4);
    options.resume = true;
    m_Renderer.times.clear();
    EXPECT_EQ(run(options, "in_#.png", "out_#.png"), ExitOk);
    EXPECT_EQ(m_Renderer.times.size(), 1u);
}

TEST_F(PictureClipTest, DryRunRendersOneFrameAndLeavesNothing) {
    writeInputs(1, 5);
    ClipOptions options;
    options.frames = "2-4";
    m_Request.input = at("in_#.png");
    m_Request.output = at("out_#.png");
    Clip clip(options, m_Request);
    testing::internal::CaptureStderr();
    EXPECT_EQ(clip.dryRun(m_Renderer, {}, {}, m_HasFailed), ExitOk);
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
                HasSubstr("3 frames (2-4) of 7x5 pixels with 8 bits"));
    EXPECT_EQ(m_Renderer.times.size(), 1u);
    EXPECT_THAT(outputs(), IsEmpty());
    EXPECT_EQ(clip.dryRun(m_Renderer, {}, {}, [] { return true; }), ExitEffectFailed);
    // A limit on the size of files simulates a disk without space.
    const rlimit tight{10, RLIM_INFINITY};
    signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &tight);
    EXPECT_THAT([&] { clip.dryRun(m_Renderer, {}, {}, m_HasFailed); },
                Says<EffectFailure>("cannot be written"));
    const rlimit wide{RLIM_INFINITY, RLIM_INFINITY};
    setrlimit(RLIMIT_FSIZE, &wide);
    signal(SIGXFSZ, SIG_DFL);
}

TEST_F(PictureClipTest, StopSignalKeepsTheRenderedFrames) {
    writeInputs(1, 9);
    m_Renderer.beforeFrame = [&] {
        if (m_Renderer.times.size() == 3)
            raise(SIGTERM);
    };
    testing::internal::CaptureStderr();
    EXPECT_EQ(run({}, "in_#.png", "out_#.png"), ExitTerminated);
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("stopped; 4 of 9 frames are written"));
    EXPECT_EQ(outputs().size(), 4u);
}

TEST_F(PictureClipTest, FramesBeforeAFailureAreWrittenAndResumeContinues) {
    writeInputs(1, 6);
    WritePicture(input(4), SomePicture(6, 5, 8, 4));
    EXPECT_THAT(
        [&] { run({}, "in_#.png", "out_#.png"); },
        Says<WrongUse>("in_4.png: 6x5 pixels", "started with 7x5", "3 of 6 frames are written", "--resume"));
    EXPECT_EQ(outputs().size(), 3u);
    // The resumed run has the same frame size.
    ClipOptions options;
    options.resume = true;
    EXPECT_THAT([&] { run(options, "in_#.png", "out_#.png"); }, Says<WrongUse>("in_4.png: 6x5 pixels"));
    std::filesystem::remove(input(4));
    EXPECT_THAT([&] { run(options, "in_#.png", "out_#.png"); }, Says<WrongUse>("in_4.png: no such file"));
    writeInputs(4, 4);
    std::filesystem::create_directory(at("out_5.png")); // No file can be written there.
    EXPECT_THAT([&] { run(options, "in_#.png", "out_#.png"); },
                Says<EffectFailure>("out_5.png", "cannot be written", "--resume"));
    std::filesystem::remove(at("out_5.png"));
    EXPECT_EQ(run(options, "in_#.png", "out_#.png"), ExitOk);
    EXPECT_EQ(outputs().size(), 6u);
}

// A limit on the size of files simulates a full disk: writing fails in the middle of a file.
TEST_F(PictureClipTest, FullDiskIsReportedForEveryPictureFormat) {
    for (long number = 1; number <= 3; ++number)
        WritePicture(input(number), SomePicture(64, 64, 8, number));
    for (const char* ending : {".png", ".exr", ".tif", ".jpg", ".bmp"}) {
        signal(SIGXFSZ, SIG_IGN);
        rlimit before{};
        getrlimit(RLIMIT_FSIZE, &before);
        const rlimit tight{200, before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &tight);
        EXPECT_THAT([&] { run({}, "in_#.png", std::string("out_#") + ending); },
                    Says<EffectFailure>("cannot be written", "0 of 3 frames are written"))
            << ending;
        setrlimit(RLIMIT_FSIZE, &before);
        signal(SIGXFSZ, SIG_DFL);
        EXPECT_THAT(outputs(), IsEmpty()) << ending;
    }
}

TEST_F(PictureClipTest, ARunawayFrameLosesNothingThatIsRendered) {
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "the sanitizer takes no new threads after a fork with threads";
#endif
    writeInputs(1, 9);
    testing::internal::CaptureStderr();
    const int status = RunGuarded({.frameSeconds = 0.3}, "some", [&] {
        m_Renderer.beforeFrame = [&] {
            const StageSpan span(Stage::Draw);
            while (m_Renderer.times.size() == 5)
                pause();
        };
        return run({}, "in_#.png", "out_#.png");
    });
    EXPECT_EQ(status, ExitRanAway);
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
                AllOf(HasSubstr("frame 6, draw"),
                      HasSubstr("5 of 9 frames are written; the same command with --resume")));
    EXPECT_EQ(outputs().size(), 5u);
}

TEST_F(PictureClipTest, ContradictingOptionsAreRejected) {
    writeInputs(1, 2);
    m_Request.width = m_Request.height = 4;
    const struct {
        const char *input, *output, *frames, *shard, *raw, *message;
    } rows[] = {{"in_##.png", "out_#.png", "", "", "", "there is no such picture"},
                {"in_1.png", "out_#.png", "", "", "", "--frames FIRST-LAST is needed"},
                {"", "out_#.png", "", "", "", "--frames FIRST-LAST is needed"},
                {"in_#.png", "out.png", "", "", "", "out_####.png"},
                {"in_#.png", "in_#.png", "", "", "", "is the input file"},
                {"in_#.png", "out_#.zip", "", "", "", "no picture format"},
                {"in_#.png", "no/out_#.png", "", "", "", "there is no folder"},
                {"in_#.png", "out_#.png", "3-", "", "", "the last frame of"},
                {"in_1.png", "out_#.png", "3-", "", "", "has no end"},
                {"in_#.png", "-", "", "", "", "--resume"},
                {"in_#.png", "out.mp4", "", "1/2", "", "--shard"},
                {"in_#.png", "out_#.png", "", "", "4x4", "--raw"},
                {"-", "out_#.png", "", "", "", "--raw WIDTHxHEIGHT is needed"},
                {"-", "out_#.png", "", "", "4", "--raw 4"},
                {"-", "out_#.png", "0-4", "", "4x4", "begin with 1"},
                {"-", "out_#.png", "", "1/2", "4x4", "need --frames"},
                {"in.mp4", "out_#.png", "", "", "", "no such file"}};
    for (const auto& row : rows) {
        ClipOptions options;
        options.frames = row.frames;
        options.shard = row.shard;
        options.raw = row.raw;
        options.resume = std::string(row.output) == "-";
        EXPECT_THAT([&] { run(options, row.input, row.output); }, Says<WrongUse>(row.message)) << row.message;
    }
    EXPECT_THAT(outputs(), IsEmpty());
}

} // namespace
