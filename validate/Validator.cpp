#include "validate/Validator.h"

#include <chrono>
#include <cstdio>
#include <exception>
#include <fcntl.h>
#include <filesystem>
#include <unistd.h>

#include "guard/Guard.h"
#include "guard/Stage.h"
#include "toolkit/Errors.h"
#include "validate/CommandSequence.h"
#include "validate/TestTable.h"

namespace validate {

namespace {

using Clock = std::chrono::steady_clock;
using Status = TestResult::Status;

constexpr int s_ShortenAttempts = 60;

// Silences standard error while a failing sequence is tried again and again.
class QuietErrors {
public:
    QuietErrors() : m_Before(dup(STDERR_FILENO)) {
        std::fflush(stderr);
        const int nothing = open("/dev/null", O_WRONLY | O_CLOEXEC);
        dup2(nothing, STDERR_FILENO);
        close(nothing);
    }
    ~QuietErrors() {
        std::fflush(stderr);
        dup2(m_Before, STDERR_FILENO);
        close(m_Before);
    }
    QuietErrors(const QuietErrors&) = delete;
    QuietErrors& operator=(const QuietErrors&) = delete;

private:
    int m_Before;
};

using Test = std::function<void(TestRun& run)>;

// Runs in the process of the test.
int RunTest(const ValidateOptions& options, std::uint32_t seed, const Test& test, SharedReport& report) {
    const fxhost::StageSpan span(fxhost::Stage::Draw);
    TestRun run(options.plugin, seed, report, options.system, options.steps);
    try {
        test(run);
    } catch (const std::exception& error) {
        run.Fail(error.what());
    }
    return fxhost::ExitOk;
}

Status RunInChild(const ValidateOptions& options, std::uint32_t seed, const Test& test, const char* name,
                  SharedReport& report) {
    fxhost::GuardLimits limits;
    limits.frameSeconds = options.timeout;
    const int status = fxhost::RunGuarded(limits, options.plugin + ", test " + name,
                                          [&] { return RunTest(options, seed, test, report); });
    if (status == fxhost::ExitRanAway)
        return Status::RanAway;
    return status == fxhost::ExitOk && report.Findings().empty() ? Status::Passed : Status::Failed;
}

// Adds a short sequence that still fails to the result of the shuffled test.
void AddShortSequence(const ValidateOptions& options, TestResult& result) {
    const QuietErrors quiet;
    ValidateOptions quick = options;
    quick.timeout = std::min(options.timeout > 0 ? options.timeout : 10.0, 10.0);
    const auto steps = Shorten(ShuffledSteps(result.seed, options.steps), s_ShortenAttempts,
                               [&](const std::vector<Step>& fewer) {
                                   SharedReport report;
                                   return RunInChild(
                                              quick, result.seed, [&](TestRun& run) { RunSteps(run, fewer); },
                                              "", report) != Status::Passed;
                               });
    std::string text = "seed " + std::to_string(result.seed) + " fails with these " +
                       std::to_string(steps.size()) + " steps:";
    for (std::size_t i = 0; i < steps.size() && i < 20; ++i)
        text += (i ? "; " : " ") + Describe(steps[i]);
    result.findings.push_back(text + (steps.size() > 20 ? "; ..." : ""));
}

TestResult RunRow(const ValidateOptions& options, std::uint32_t seed, const TestRow& row) {
    TestResult result{row.name, row.protects, row.level, seed, Status::Passed, 0, 0, {}, {}};
    SharedReport report;
    const Clock::time_point begin = Clock::now();
    result.status = RunInChild(options, seed, row.test, row.name, report);
    result.seconds = std::chrono::duration<double>(Clock::now() - begin).count();
    result.commands = report.CommandCount();
    result.findings = report.Findings();
    if (result.status == Status::Passed)
        return result;
    result.log = report.Log();
    if (result.status == Status::RanAway)
        result.findings.push_back("crashed or did not come to an end; the last command was " +
                                  (result.log.empty() ? "none" : result.log.back()));
    if (row.test == ShuffledCommands)
        AddShortSequence(options, result);
    return result;
}

std::vector<const TestRow*> Select(const ValidateOptions& options) {
    std::vector<const TestRow*> rows;
    for (const TestRow* row = TestTable(); row->name; ++row)
        if (options.only.empty() ? row->level <= options.level : options.only == row->name)
            rows.push_back(row);
    return rows;
}

void Check(const ValidateOptions& options, bool found) {
    if (options.level < 1 || options.level > 10)
        throw fxhost::WrongUse("--level " + std::to_string(options.level) + ": 1 to 10 was expected");
    if (!found)
        throw fxhost::WrongUse("--only " + options.only + ": --list names the tests");
    if (!std::filesystem::exists(options.plugin))
        throw fxhost::WrongUse(options.plugin + ": there is no such bundle or module");
}

} // namespace

std::vector<TestResult> Validate(const ValidateOptions& options, const Progress& progress) {
    const auto rows = Select(options);
    Check(options, !rows.empty());
    std::vector<TestResult> results;
    const std::size_t count = rows.size() * static_cast<std::size_t>(options.repeat);
    for (int i = 0; i < options.repeat; ++i)
        for (const TestRow* row : rows) {
            progress(results.size() + 1, count, row->name);
            results.push_back(RunRow(options, options.seed + static_cast<std::uint32_t>(i), *row));
            if (row->test == Loads && results.back().status != Status::Passed)
                return results;
        }
    return results;
}

} // namespace validate
