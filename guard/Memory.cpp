#include "guard/Memory.h"

#include <sys/resource.h>
#include <unistd.h>

namespace fxhost {

std::uint64_t MachineMemory() {
    return static_cast<std::uint64_t>(sysconf(_SC_PHYS_PAGES)) *
           static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
}

void LimitMemory(std::uint64_t bytes) {
    rlimit limit{};
    getrlimit(RLIMIT_DATA, &limit);
    if (limit.rlim_max == RLIM_INFINITY || bytes < limit.rlim_max)
        limit.rlim_cur = bytes;
    setrlimit(RLIMIT_DATA, &limit);
}

void LiftMemoryLimit() {
    rlimit limit{};
    getrlimit(RLIMIT_DATA, &limit);
    limit.rlim_cur = limit.rlim_max;
    setrlimit(RLIMIT_DATA, &limit);
}

} // namespace fxhost
