#include "platform/System.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#if defined(__GLIBC__)
#include <malloc.h>
#endif
#include <unistd.h>

const char* SystemName() {
    return "linux";
}

std::string ProgramPath() {
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error).string();
}

std::optional<std::uint64_t> ProcessDataBytes(pid_t process) {
    char path[64];
    std::snprintf(path, sizeof path, "/proc/%ld/statm", static_cast<long>(process));
    std::FILE* file = std::fopen(path, "r");
    if (!file)
        return std::nullopt;
    unsigned long long pages = 0;
    const int found =
        std::fscanf(file, "%*s %*s %*s %*s %*s %llu", &pages); // the sixth field: data and stack
    std::fclose(file);
    if (found != 1)
        return std::nullopt;
    return pages * static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
}

void KeepFreedMemory() {
#if defined(__GLIBC__)
    mallopt(M_MMAP_THRESHOLD, 32 << 20); // the highest value allowed; about one 1920x1080 RGBA float frame
    mallopt(M_TRIM_THRESHOLD, 256 << 20);
    setenv("MALLOC_MMAP_THRESHOLD_", "33554432", 0);
    setenv("MALLOC_TRIM_THRESHOLD_", "268435456", 0);
#endif
}
