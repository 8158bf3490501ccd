#include <gtest/gtest.h>

#include "platform/GLProblem.h"
#include "tests/faults/Faults.h"
#include "tests/faults/LifeCycle.h"
#include "tests/support/TestPackage.h"

namespace {

struct FaultRow {
    const char* name;
    Faults::Kind kind;
    std::size_t step;     // 1 makes each call fail in turn, 2 every other call
    bool onwards = false; // all later calls fail, too
};

class FaultsGLTest : public testing::TestWithParam<FaultRow> {};

TEST_P(FaultsGLTest, AFailureIsReportedOrHarmlessAndLeavesNoGLObjects) {
    const TemporaryFolder folder;
    WriteEffect(folder);
    const LifeCycleResult right = RunLifeCycle();
    if (right.report == "no set-up")
        GTEST_SKIP() << PlatformGLProblem();
    ASSERT_EQ(right.report, "");
    ASSERT_FALSE(right.pixels.empty());

    Faults::FailAt(GetParam().kind, Faults::Never);
    RunLifeCycle();
    const std::size_t calls = Faults::Stop();
    ASSERT_GT(calls, 0u);
    for (std::size_t call = 0; call < calls; call += GetParam().step) {
        const long before = Faults::LiveGLObjects();
        Faults::FailAt(GetParam().kind, call, GetParam().onwards);
        const LifeCycleResult result = RunLifeCycle();
        Faults::Stop();
        EXPECT_TRUE(!result.report.empty() || result.pixels == right.pixels)
            << "call " << call << " of " << calls << " fails silently";
        EXPECT_EQ(Faults::LiveGLObjects(), before) << "call " << call << " of " << calls;
    }
    EXPECT_EQ(RunLifeCycle().pixels, right.pixels) << "no failure has lasting effects";
}

INSTANTIATE_TEST_SUITE_P(, FaultsGLTest,
                         testing::Values(FaultRow{"Allocation", Faults::Kind::Allocation, 1},
                                         FaultRow{"ScriptAllocation", Faults::Kind::ScriptAllocation, 61},
                                         FaultRow{"ScriptMemory", Faults::Kind::ScriptAllocation, 7, true},
                                         FaultRow{"GLObject", Faults::Kind::GLObject, 1},
                                         FaultRow{"GLMemory", Faults::Kind::GLMemory, 1},
                                         FaultRow{"FileAccess", Faults::Kind::FileAccess, 1}),
                         [](const auto& row) { return std::string(row.param.name); });

} // namespace
