#include "standalone/guard/Guard.h"

#include <csignal>
#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <list>
#include <thread>
#include <unistd.h>
#include <vector>

#include "standalone/Errors.h"
#include "standalone/guard/Stage.h"
#include "standalone/guard/StopRequest.h"

namespace {

using namespace fxhost;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;

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
    const Ending good = Guarded({}, [] { return 0; });
    EXPECT_EQ(good.status, 0);
    EXPECT_THAT(good.said, IsEmpty());
    EXPECT_EQ(Guarded({}, [] { return 1; }).status, 1);
    const Ending wrong = Guarded({}, []() -> int { throw WrongUse("--size 0: no"); });
    EXPECT_EQ(wrong.status, ExitWrongUse);
    EXPECT_EQ(wrong.said, "fxhost: --size 0: no\n");
    EXPECT_EQ(Guarded({}, []() -> int { throw EffectFailure("x"); }).status, ExitEffectFailed);
}

TEST(GuardTest, AStageThatNeverEndsIsNamedWithItsFrame) {
    const Ending setup = Guarded({.frameSeconds = 0.2}, []() -> int {
        const StageSpan span(Stage::Setup);
        Forever();
    });
    EXPECT_EQ(setup.status, ExitRanAway);
    EXPECT_THAT(setup.said, HasSubstr("effects/some: setup: no end after 0.2 s (--frame-timeout)"));

    const Ending draw = Guarded({.frameSeconds = 0.2}, []() -> int {
        ReportWritten(11, 240, true);
        ReportFrame(12);
        StageSpan span(Stage::PreRender);
        span.next(Stage::Draw);
        Forever();
    });
    EXPECT_EQ(draw.status, ExitRanAway);
    EXPECT_THAT(draw.said, AllOf(HasSubstr("effects/some: frame 12, draw: no end after 0.2 s"),
                                 HasSubstr("11 of 240 frames are written; --resume")));
}

TEST(GuardTest, OnlyTheTimeInsideOneSpanCounts) {
    const GuardLimits limits{.frameSeconds = 1};
    EXPECT_EQ(Guarded(limits,
                      [] {
                          usleep(1'300'000); // waiting for input
                          for (int frame = 0; frame < 3; ++frame) {
                              const StageSpan span(Stage::Draw);
                              usleep(400'000);
                          }
                          return 0;
                      })
                  .status,
              0);
}

TEST(GuardTest, ACrashIsNamedWithItsStage) {
    const Ending crash = Guarded({}, []() -> int {
        ReportFrame(3);
        const StageSpan span(Stage::ReadBack);
        raise(SIGKILL); // what no handler sees
        return 0;
    });
    EXPECT_EQ(crash.status, ExitRanAway);
    EXPECT_THAT(crash.said, HasSubstr("frame 3, read-back: crashed with signal 9"));
    EXPECT_EQ(Guarded({}, []() -> int { std::abort(); }).status, ExitRanAway);
}

TEST(GuardTest, MemoryThatGrowsWithoutEndIsStopped) {
    const Ending slow = Guarded({.memoryBytes = 200u << 20}, []() -> int {
        const StageSpan span(Stage::Draw);
        std::list<std::vector<char>> all;
        for (;;) {
            all.emplace_back(1u << 20, 'x');
            usleep(2000);
        }
    });
    EXPECT_EQ(slow.status, ExitRanAway);
    EXPECT_THAT(slow.said, HasSubstr("draw: the work needs more memory than it may take (--memory-limit)"));

    const Ending atOnce = Guarded({.memoryBytes = 200u << 20}, [] {
        const StageSpan span(Stage::Setup);
        return std::vector<char>(1u << 30).empty() ? 1 : 0;
    });
    EXPECT_EQ(atOnce.status, ExitRanAway);
    EXPECT_THAT(atOnce.said, HasSubstr("(--memory-limit)"));
}

TEST(GuardTest, WhatIsRenderedIsSavedBeforeTheEnd) {
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
}

TEST(GuardTest, AStopSignalReachesTheWork) {
    const Ending ending = Guarded({}, [] {
        const StopScope stop(false);
        kill(getppid(), SIGINT);
        while (!StopRequested())
            usleep(1000);
        return static_cast<int>(ExitStopped);
    });
    EXPECT_EQ(ending.status, ExitStopped);
    // Work that has nothing to save just ends.
    EXPECT_EQ(Guarded({},
                      []() -> int {
                          kill(getppid(), SIGTERM);
                          Forever();
                      })
                  .status,
              ExitStopped);
}

} // namespace
