#include "platform/System.h"

#include <libproc.h>
#include <mach-o/dyld.h>
#include <sys/resource.h>

#include <cstdint>
#include <filesystem>

const char* SystemName() {
    return "macos";
}

std::string ProgramPath() {
    std::uint32_t size = 0;
    _NSGetExecutablePath(nullptr, &size); // reports the size that it needs
    std::string path(size, '\0');
    if (_NSGetExecutablePath(path.data(), &size) != 0)
        return {};
    path.resize(path.find('\0'));
    std::error_code error;
    return std::filesystem::canonical(path, error).string();
}

std::optional<std::uint64_t> ProcessDataBytes(pid_t process) {
    rusage_info_v2 usage{};
    if (proc_pid_rusage(process, RUSAGE_INFO_V2, reinterpret_cast<rusage_info_t*>(&usage)) != 0)
        return std::nullopt;
    return usage.ri_phys_footprint;
}

void KeepFreedMemory() {} // the allocator of macOS keeps them
