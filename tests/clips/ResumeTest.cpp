#include <csignal>
#include <filesystem>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/clips/ClipFixture.h"
#include "toolkit/Errors.h"
#include "toolkit/PictureFile.h"

namespace {

using namespace fxhost;
using testing::ElementsAre;
using testing::HasSubstr;
namespace fs = std::filesystem;

// Clips of six numbered pictures.
class ResumeTest : public ClipFixture {
protected:
    ResumeTest() {
        for (long number = 1; number <= 6; ++number)
            WritePicture(at("in_" + std::to_string(number) + ".png"), SomePicture(7, 5, 8, number));
    }
    struct Run {
        int status;
        std::size_t rendered;
        std::string messages;
    };
    Run resume() {
        ClipOptions options;
        options.resume = true;
        m_Renderer.times.clear();
        testing::internal::CaptureStderr();
        const int status = run(options, "in_#.png", "out_#.png");
        return {status, m_Renderer.times.size(), testing::internal::GetCapturedStderr()};
    }
};

TEST_F(ResumeTest, FailedFrameHasNoFileAndIsRenderedAgain) {
    writeFile("out_3.png", "of an earlier run");
    m_HasFailed = [&] { return m_Renderer.times.size() == 3; };
    EXPECT_EQ(run({}, "in_#.png", "out_#.png"), ExitEffectFailed);
    EXPECT_FALSE(exists("out_3.png"));
    EXPECT_TRUE(exists("out_3.failed.png"));
    EXPECT_TRUE(exists("out_4.png"));
    m_HasFailed = [] { return true; };
    const Run again = resume();
    EXPECT_EQ(again.status, ExitEffectFailed);
    EXPECT_EQ(again.rendered, 1u);
    EXPECT_THAT(again.messages, HasSubstr("failed in 1 frames, which are not written: 3"));
    m_HasFailed = [] { return false; };
    EXPECT_EQ(resume().status, ExitOk);
    EXPECT_TRUE(exists("out_3.png"));
    EXPECT_FALSE(exists("out_3.failed.png"));
}

TEST_F(ResumeTest, FramesWhoseInputsHaveChangedAreRenderedAgain) {
    m_Settings = {"Amount=0:0, 5:5"};
    ASSERT_EQ(run({}, "in_#.png", "out_#.png"), ExitOk);
    const struct {
        const char* name;
        std::function<void()> change;
        std::size_t rendered;
    } rows[] = {
        {"nothing", [] {}, 0},
        {"a keyframe", [&] { m_Settings = {"Amount=0:0, 4:4, 5:9"}; }, 1},
        {"the effect", [&] { m_Request.identity = 1; }, 6},
        {"one input", [&] { WritePicture(at("in_2.png"), SomePicture(7, 5, 8, 99)); }, 1},
        {"the depth", [&] { m_Request.reading.depth = 16; }, 6},
        {"a truncated picture", [&] { fs::resize_file(at("out_5.png"), fs::file_size(at("out_5.png")) / 2); },
         1},
        {"no record", [&] { fs::remove(at(".out_#.png.record")); }, 6},
        {"the order of keyframes", [&] { m_Settings = {"Amount=5:9, 4:4, 0:0"}; }, 0},
    };
    for (const auto& row : rows) {
        row.change();
        const Run run = resume();
        EXPECT_EQ(run.rendered, row.rendered) << row.name;
        const std::string message = std::to_string(row.rendered) + " of 6 frames are rendered again";
        EXPECT_EQ(run.messages.find(message) != std::string::npos, row.rendered > 0) << row.name;
    }
}

TEST_F(ResumeTest, SecondRunToTheSameFramesIsRejectedUntilTheFirstEnds) {
    int pipe[2];
    ASSERT_EQ(::pipe(pipe), 0);
    const pid_t child = fork();
    if (child == 0) {
        m_Renderer.beforeFrame = [&] {
            [[maybe_unused]] const ssize_t written = write(pipe[1], "x", 1);
            for (;;)
                pause();
        };
        ClipOptions options;
        options.shard = "1/2";
        _exit(run(options, "in_#.png", "out_%d.png"));
    }
    char byte;
    ASSERT_EQ(read(pipe[0], &byte, 1), 1);
    const std::string holder = "process " + std::to_string(child) + " on ";
    EXPECT_THAT([&] { run({}, "in_#.png", "out_#.png"); },
                Says<EffectFailure>("out_#.png", holder, "started"));
    ClipOptions other;
    other.shard = "2/2"; // other frames
    EXPECT_EQ(run(other, "in_#.png", "out_#.png"), ExitOk);
    kill(child, SIGKILL); // leaves a stale lock
    waitpid(child, nullptr, 0);
    EXPECT_EQ(run({}, "in_#.png", "out_#.png"), ExitOk);
    for (const std::string& name : names())
        EXPECT_EQ(name.find(".lock"), std::string::npos) << name;
}

TEST_F(ResumeTest, InputIsNotOverwrittenUnderAnotherSpelling) {
    fs::create_directory_symlink(m_Folder, at("link"));
    fs::create_hard_link(at("in_4.png"), at("out_4.png"));
    fs::copy_file(at("in_1.png"), at("layer_9.png"));
    m_Request.otherInputs = {at("./layer_9.png")};
    ClipOptions nine;
    nine.frames = "9";
    const struct {
        ClipOptions options;
        const char *input, *output, *file;
    } rows[] = {
        {{}, "in_#.png", "./in_#.png", "in_1.png"},
        {{}, "in_#.png", "link/in_%d.png", "in_1.png"},
        {{}, "in_#.png", "out_#.png", "in_4.png"},
        {nine, "in_1.png", "link/layer_#.png", "layer_9.png"},
    };
    const std::string before = bytes("in_1.png");
    for (const auto& row : rows) {
        const auto overwrite = [&] { run(row.options, row.input, row.output); };
        EXPECT_THAT(overwrite, Says<WrongUse>("is the input file", row.file)) << row.output;
    }
    EXPECT_EQ(bytes("in_1.png"), before);
}

TEST_F(ResumeTest, ExistingFilesAreKeptOnRequest) {
    ClipOptions options;
    options.keepExisting = true;
    EXPECT_EQ(run(options, "in_#.png", "out_#.png"), ExitOk);
    EXPECT_THAT([&] { run(options, "in_#.png", "out_#.png"); }, Says<WrongUse>("out_1.png: exists", "-n"));
    options.resume = true;
    fs::remove(at("out_2.png"));
    EXPECT_EQ(run(options, "in_#.png", "out_#.png"), ExitOk);
}

} // namespace
