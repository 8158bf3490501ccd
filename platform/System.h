#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <sys/types.h>

// Facts about the operating system that no standard library reports. All functions may be called from any
// thread.

// The system that this code was compiled for: "linux" or "macos".
const char* SystemName();

// Absolute path of the running program, with symbolic links resolved; empty when the system does not report
// it.
std::string ProgramPath();

// Bytes of private writable memory of a process. On Linux this is what RLIMIT_DATA limits. Empty when the
// system does not report it, for example because the process has ended.
std::optional<std::uint64_t> ProcessDataBytes(pid_t process);

// Makes the C library keep freed blocks of many megabytes for the next frame, in this process and in the
// programs that it starts. Otherwise each frame gets fresh pages, which the system has to clear. Call it
// before other threads start.
void KeepFreedMemory();
