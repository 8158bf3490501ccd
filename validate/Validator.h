#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "validate/HostSystem.h"

namespace validate {

struct ValidateOptions {
    std::string plugin;      // a bundle NAME.plugin or a bare module
    int level = 5;           // runs all tests up to this level, 1 to 10
    std::uint32_t seed = 1;  // of the first run
    int repeat = 1;          // runs, each with the next seed
    std::size_t steps = 500; // of the test "shuffled-commands"; a step sends two or three commands
    double timeout = 60;     // seconds for one test; 0: no limit
    std::string only;        // name of the only test to run, whatever its level; empty: all
    HostSystem system;
};

struct TestResult {
    enum class Status { Passed, Failed, RanAway }; // RanAway: crashed or exceeded the time limit
    std::string name;
    std::string protects; // what the test protects a user from
    int level = 0;
    std::uint32_t seed = 0;
    Status status = Status::Passed;
    double seconds = 0;
    std::size_t commands = 0; // that hosts sent
    std::vector<std::string> findings;
    std::vector<std::string> log; // the last commands; only of tests that did not pass
};

// Is called before each test: its number from 1, the number of tests, and its name.
using Progress = std::function<void(std::size_t number, std::size_t count, const std::string& name)>;

// Runs the tests in order, each in a separate process, and returns their results. When "loads" does not
// pass, no other test runs. Throws fxhost::WrongUse for a plug-in file that does not exist, a level out of
// range and an unknown test. Call it while the process has one thread and no GL context.
std::vector<TestResult> Validate(const ValidateOptions& options, const Progress& progress);

} // namespace validate
