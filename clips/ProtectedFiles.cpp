#include "clips/ProtectedFiles.h"

#include <optional>
#include <sys/stat.h>

#include "toolkit/Errors.h"

namespace fxhost {

namespace {

std::optional<std::pair<dev_t, ino_t>> FileOf(const std::string& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    return std::pair(status.st_dev, status.st_ino);
}

} // namespace

void ProtectedFiles::add(const std::string& path) {
    if (const auto file = FileOf(path))
        m_Files.emplace(*file, path);
}

void ProtectedFiles::requireOther(const std::string& output) const {
    const auto file = FileOf(output);
    const auto found = file ? m_Files.find(*file) : m_Files.end();
    if (found != m_Files.end())
        throw WrongUse("--output " + output + ": is the input file " + found->second +
                       "; expected another file name");
}

} // namespace fxhost
