#pragma once

#include <cstdint>
#include <optional>
#include <sys/types.h>

namespace fxhost {

// Bytes of private writable memory of a process, what RLIMIT_DATA counts; nothing when the system does not
// tell.
std::optional<std::uint64_t> DataBytes(pid_t process);

// Bytes of memory in this machine.
std::uint64_t MachineMemory();

// Frames of many megabytes come and go. Keeps freed ones for the next, in this process and in the programs
// that it starts, where the C library would give them back and take fresh pages, which the system has to
// clear. Call it before other threads start.
void KeepFreedMemory();

// Makes allocations fail beyond `bytes` of private memory; what this process starts may set its own limit
// back with LiftMemoryLimit.
void LimitMemory(std::uint64_t bytes);
// Safe between fork and exec.
void LiftMemoryLimit();

} // namespace fxhost
