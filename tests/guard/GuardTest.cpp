#include "guard/Guard.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <list>
#include <thread>
#include <unistd.h>
#include <vector>

#include "guard/Stage.h"
#include "guard/StopRequest.h"
#include "toolkit/Errors.h"

namespace {

using namespace fxhost;
using testing::AllOf;
using testing::HasSubstr;

struct GuardedRun {
    int status;
    std::string messages; // from standard error
};

GuardedRun Guarded(const GuardLimits& limits, const std::function<int()>& work) {
    testing::internal::CaptureStderr();
    const int status = RunGuarded(limits, "effects/some", work);
    return {status, testing::internal::GetCapturedStderr()};
}

[[noreturn]] void LoopForever() {
    for (volatile bool on = true; on;)
        usleep(1000);
    std::abort();
}

TEST(GuardTest, WorkThatReturnsOrThrowsGivesItsExitStatusAndMessage) {
    const struct {
        const char* name;
        std::function<int()> work;
        int status;
        const char* message;
    } rows[] = {
        {"success", [] { return 0; }, 0, ""},
        {"status 1", [] { return 1; }, 1, ""},
        {"wrong use", []() -> int { throw WrongUse("--size 0: no"); }, 2, "fxhost: --size 0: no\n"},
        {"file", []() -> int { throw EffectFailure("a/fx.js", "x"); }, 1, "a/fx.js: error: x\n"},
        {"no file", []() -> int { throw EffectFailure("y"); }, 1, "fxhost: y\n"},
    };
    for (const auto& row : rows) {
        const GuardedRun run = Guarded({}, row.work);
        EXPECT_EQ(run.status, row.status) << row.name;
        EXPECT_EQ(run.messages, row.message) << row.name;
    }
}

void AllocateForever() {
    for (std::list<std::vector<char>> all;; usleep(2000))
        all.emplace_back(1u << 20, 'x');
}

TEST(GuardTest, HangsCrashesAndExcessMemoryAreReportedWithFrameAndStage) {
    const GuardLimits time{.frameSeconds = 0.2}, memory{.memoryBytes = 200u << 20};
    const std::string tooLarge = "the work needs more memory than it may take (--memory-limit)";
    const struct {
        GuardLimits limits;
        long frame;
        Stage stage;
        std::function<void()> work;
        std::string message;
    } rows[] = {
        {time, 12, Stage::Setup, LoopForever, "some: setup: no end after 0.2 s (--frame-timeout)"},
        {time, 12, Stage::Draw, LoopForever, "some: frame 12, draw: no end after 0.2 s (--frame-timeout)"},
        {{}, 3, Stage::ReadBack, [] { raise(SIGKILL); }, "some: frame 3, read-back: crashed with signal 9"},
        {memory, -1, Stage::Draw, AllocateForever, "some: draw: " + tooLarge},
        {memory, 3, Stage::Draw, [] { std::vector<char>(1u << 30); }, tooLarge},
    };
    for (const auto& row : rows) {
        const bool resumable = row.frame == 12;
        const GuardedRun run = Guarded(row.limits, [&] {
            ReportWritten(11, 240, resumable);
            ReportFrame(row.frame);
            StageSpan span(Stage::PreRender);
            span.next(row.stage);
            row.work();
            return 0;
        });
        EXPECT_EQ(run.status, ExitRanAway) << row.message;
        EXPECT_THAT(run.messages,
                    AllOf(HasSubstr(row.message),
                          HasSubstr(resumable ? "11 of 240 frames are written; the same command "
                                                "with --resume continues"
                                              : "11 of 240 frames are written\n")));
    }
}

TEST(GuardTest, TimeLimitCoversOneSpanAndNotTheTimeBetweenSpans) {
    const auto work = [] {
        usleep(700'000); // as if it waited for input
        for (int frame = 0; frame < 3; ++frame) {
            const StageSpan span(Stage::Draw);
            usleep(300'000);
        }
        return 0;
    };
    EXPECT_EQ(Guarded({.frameSeconds = 0.6}, work).status, 0);
}

TEST(GuardTest, RenderedFramesAreWrittenBeforeAHungProcessIsKilled) {
    const auto begin = std::chrono::steady_clock::now();
    const GuardedRun run = Guarded({.frameSeconds = 0.2}, []() -> int {
        const StopScope stop(true);
        ReportWritten(1, 10, true);
        std::thread([] {
            while (!AbandonRequested())
                usleep(1000);
            ReportWritten(3, 10, true);
            MarkDrained();
        }).detach();
        ReportFrame(4);
        const StageSpan span(Stage::Draw);
        LoopForever();
    });
    EXPECT_EQ(run.status, ExitRanAway);
    EXPECT_THAT(run.messages, HasSubstr("3 of 10 frames are written"));
    // The parent waits up to 20 s, but not after MarkDrained.
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(15));
}

TEST(GuardTest, HangWithoutForkEndsTheProcessAfterWritingRenderedFrames) {
    const auto run = [] {
        RunGuarded({.frameSeconds = 0.2, .fork = false}, "effects/some", []() -> int {
            const StopScope stop(true);
            std::thread([] {
                while (!AbandonRequested())
                    usleep(1000);
                ReportWritten(3, 10, true);
                MarkDrained();
            }).detach();
            const StageSpan span(Stage::Script);
            LoopForever();
        });
    };
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_EXIT(run(), testing::ExitedWithCode(ExitRanAway),
                "some: draw: no end after 0.2 s.*\n.*3 of 10 frames are written");
}

TEST(GuardTest, StopSignalReachesTheWorkAndEndsWorkThatDoesNotHandleIt) {
    const auto finish = [] {
        const StopScope stop(false);
        kill(getppid(), SIGINT);
        while (!StopRequested())
            usleep(1000);
        return StopStatus();
    };
    EXPECT_EQ(Guarded({}, finish).status, ExitStopped);
    const auto ignore = []() -> int {
        kill(getppid(), SIGTERM);
        LoopForever();
    };
    EXPECT_EQ(Guarded({}, ignore).status, ExitTerminated);
    const auto hangUp = []() -> int {
        kill(getppid(), SIGHUP);
        LoopForever();
    };
    EXPECT_EQ(Guarded({}, hangUp).status, ExitHungUp);
}

} // namespace
