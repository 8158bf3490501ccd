#include "platform/System.h"

#include <mach-o/dyld.h>

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
