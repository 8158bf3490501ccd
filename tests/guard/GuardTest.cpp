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

struct Ending {
    int status;
    std::string said;
};

Ending Guarded(const GuardLimits& limits, const std::function<int()>& work) {
    testing::internal::CaptureStderr();
    const int status = RunGuarded(limits, "effects/some", work);
    return {status, testing::internal::GetCapturedStderr()};
}

[[noreturn]] void Forever() {
    for (volatile bool on = true; on;)
        usleep(1000);
    std::abort();
}

TEST(GuardTest, WorkThatEndsGivesItsOwnStatusAndWords) {
    const struct {
        std::function<int()> work;
        int status;
        const char* said;
    } rows[] = {
        {[] { return 0; }, 0, ""},
        {[] { return 1; }, 1, ""},
        {[]() -> int { throw WrongUse("--size 0: no"); }, ExitWrongUse, "fxhost: --size 0: no\n"},
        {[]() -> int { throw EffectFailure("a/fx.js", "x"); }, ExitEffectFailed, "a/fx.js: error: x\n"},
        {[]() -> int { throw EffectFailure("y"); }, ExitEffectFailed, "fxhost: y\n"},
    };
    for (const auto& row : rows) {
        const Ending ending = Guarded({}, row.work);
        EXPECT_EQ(ending.status, row.status);
        EXPECT_EQ(ending.said, row.said);
    }
}

void Grow() {
    for (std::list<std::vector<char>> all;; usleep(2000))
        all.emplace_back(1u << 20, 'x');
}

TEST(GuardTest, WhatRunsAwayOrCrashesIsNamedWithItsFrameAndStage) {
    const GuardLimits time{.frameSeconds = 0.2}, memory{.memoryBytes = 200u << 20};
    const std::string tooLarge = "the work needs more memory than it may take (--memory-limit)";
    const struct {
        GuardLimits limits;
        long frame;
        Stage stage;
        std::function<void()> work;
        std::string said;
    } rows[] = {
        {time, 12, Stage::Setup, Forever, "some: setup: no end after 0.2 s (--frame-timeout)"},
        {time, 12, Stage::Draw, Forever, "some: frame 12, draw: no end after 0.2 s (--frame-timeout)"},
        {{}, 3, Stage::ReadBack, [] { raise(SIGKILL); }, "some: frame 3, read-back: crashed with signal 9"},
        {memory, -1, Stage::Draw, Grow, "some: draw: " + tooLarge},
        {memory, 3, Stage::Draw, [] { std::vector<char>(1u << 30); }, tooLarge},
    };
    for (const auto& row : rows) {
        const bool resumable = row.frame == 12;
        const Ending ending = Guarded(row.limits, [&] {
            ReportWritten(11, 240, resumable);
            ReportFrame(row.frame);
            StageSpan span(Stage::PreRender);
            span.next(row.stage);
            row.work();
            return 0;
        });
        EXPECT_EQ(ending.status, ExitRanAway) << row.said;
        EXPECT_THAT(ending.said,
                    AllOf(HasSubstr(row.said), HasSubstr(resumable ? "11 of 240 frames are written; --resume"
                                                                   : "11 of 240 frames are written\n")));
    }
}

TEST(GuardTest, OnlyTheTimeInsideOneSpanCounts) {
    const auto work = [] {
        usleep(700'000); // waiting for input
        for (int frame = 0; frame < 3; ++frame) {
            const StageSpan span(Stage::Draw);
            usleep(300'000);
        }
        return 0;
    };
    EXPECT_EQ(Guarded({.frameSeconds = 0.6}, work).status, 0);
}

TEST(GuardTest, WhatIsRenderedIsSavedBeforeTheEnd) {
    const auto begin = std::chrono::steady_clock::now();
    const Ending ending = Guarded({.frameSeconds = 0.2}, []() -> int {
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
        Forever();
    });
    EXPECT_EQ(ending.status, ExitRanAway);
    EXPECT_THAT(ending.said, HasSubstr("3 of 10 frames are written"));
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(15)); // not all the grace
}

TEST(GuardTest, AStopSignalReachesTheWorkAndEndsWhatHasNothingToSave) {
    const auto finish = [] {
        const StopScope stop(false);
        kill(getppid(), SIGINT);
        while (!StopRequested())
            usleep(1000);
        return static_cast<int>(ExitStopped);
    };
    EXPECT_EQ(Guarded({}, finish).status, ExitStopped);
    const auto ignore = []() -> int {
        kill(getppid(), SIGTERM);
        Forever();
    };
    EXPECT_EQ(Guarded({}, ignore).status, ExitStopped);
}

} // namespace
