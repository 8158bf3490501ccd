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

// Makes allocations fail beyond `bytes` of private memory; what this process starts may set its own limit
// back with LiftMemoryLimit.
void LimitMemory(std::uint64_t bytes);
// Safe between fork and exec.
void LiftMemoryLimit();

} // namespace fxhost
