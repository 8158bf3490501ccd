#pragma once

#include <cstddef>
#include <filesystem>
#include <span>

namespace fxhost {

// The name under which a file or folder is written until it is complete: ".STEM.PROCESS.EXTENSION" beside
// `target`. The process id keeps runs apart; the extension stays, because encoders choose the format by it.
std::filesystem::path UnfinishedPath(const std::filesystem::path& target);

// A file or folder that is written under its unfinished name and appears under its own name only when it is
// complete. The destructor deletes what was not committed. The caller makes the file or folder.
class AtomicFile {
public:
    explicit AtomicFile(std::filesystem::path target);
    ~AtomicFile();
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;

    const std::filesystem::path& unfinished() const { return m_Unfinished; }

    // Renames to the target. A file that exists there is replaced. Throws std::filesystem::filesystem_error.
    void commit() const;

private:
    std::filesystem::path m_Target, m_Unfinished;
};

// Writes a whole file without renaming. Throws std::runtime_error with the system's reason, for example when
// the disk is full.
void WriteFile(const std::filesystem::path& path, std::span<const std::byte> bytes);

// Writes a file that appears under its name only when it is complete. Throws EffectFailure that names it.
void WriteFileAtomically(const std::filesystem::path& path, std::span<const std::byte> bytes);

} // namespace fxhost
