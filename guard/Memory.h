#pragma once

#include <cstdint>
#include <optional>
#include <sys/types.h>

namespace fxhost {

// Bytes of private writable memory of a process, which is what RLIMIT_DATA limits. Empty where the system
// does not publish it.
std::optional<std::uint64_t> DataBytes(pid_t process);

// Bytes of physical memory in this machine.
std::uint64_t MachineMemory();

// Makes the C library keep freed blocks of many megabytes for the next frame, in this process and in the
// programs that it starts. Otherwise each frame gets fresh pages, which the system has to clear. Call it
// before other threads start.
void KeepFreedMemory();

// Makes allocations beyond `bytes` of private memory fail. Programs that this process starts may remove the
// limit again with LiftMemoryLimit.
void LimitMemory(std::uint64_t bytes);
// Async-signal-safe, so that it can be called between fork and exec.
void LiftMemoryLimit();

} // namespace fxhost
