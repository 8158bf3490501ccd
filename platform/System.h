#pragma once

#include <string>

// Facts about the operating system that no standard library reports. All functions may be called from any
// thread.

// The system that this code was compiled for: "linux" or "macos".
const char* SystemName();

// Absolute path of the running program, with symbolic links resolved; empty when the system does not report
// it.
std::string ProgramPath();
