#include "toolkit/AtomicFile.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <string>
#include <unistd.h>
#include <utility>

#include "toolkit/Errors.h"

namespace fxhost {

namespace fs = std::filesystem;

fs::path UnfinishedPath(const fs::path& target) {
    return target.parent_path() /
           ("." + target.stem().string() + "." + std::to_string(::getpid()) + target.extension().string());
}

AtomicFile::AtomicFile(fs::path target)
    : m_Target(std::move(target)), m_Unfinished(UnfinishedPath(m_Target)) {}

AtomicFile::~AtomicFile() {
    std::error_code ignored;
    fs::remove_all(m_Unfinished, ignored);
}

void AtomicFile::commit() const {
    fs::rename(m_Unfinished, m_Target);
}

void WriteFile(const fs::path& path, std::span<const std::byte> bytes) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file)
        throw std::runtime_error(std::strerror(errno));
}

void WriteFileAtomically(const fs::path& path, std::span<const std::byte> bytes) {
    try {
        const AtomicFile file(path);
        WriteFile(file.unfinished(), bytes);
        file.commit();
    } catch (const fs::filesystem_error& error) {
        throw EffectFailure(path.string(), "cannot be written: " + error.code().message());
    } catch (const std::runtime_error& error) {
        throw EffectFailure(path.string(), std::string("cannot be written: ") + error.what());
    }
}

} // namespace fxhost
