#pragma once

#include <string>
#include <vector>

#include "validate/Validator.h"

namespace validate {

// One line a test, then its findings and, when it did not return, its last commands. For people.
std::string ToText(const std::vector<TestResult>& results);
// A JSON object with the plug-in, the verdict ("valid", "invalid", "crashed") and an array of tests.
std::string ToJson(const std::string& plugin, const std::vector<TestResult>& results);
// A JUnit test suite, as continuous integration reads it.
std::string ToJunit(const std::string& plugin, const std::vector<TestResult>& results);

// 0 valid, 1 invalid, 4 crashed or hung.
int ExitStatusOf(const std::vector<TestResult>& results);

} // namespace validate
