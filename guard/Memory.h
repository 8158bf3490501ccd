#pragma once

#include <cstdint>

namespace fxhost {

// Bytes of physical memory in this machine.
std::uint64_t MachineMemory();

// Makes allocations beyond `bytes` of private memory fail. Programs that this process starts may remove the
// limit again with LiftMemoryLimit.
void LimitMemory(std::uint64_t bytes);
// Async-signal-safe, so that it can be called between fork and exec.
void LiftMemoryLimit();

} // namespace fxhost
