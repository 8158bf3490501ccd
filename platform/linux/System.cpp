#include "platform/System.h"

#include <filesystem>

const char* SystemName() {
    return "linux";
}

std::string ProgramPath() {
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error).string();
}
