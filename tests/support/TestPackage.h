#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

// A folder of its own below the system's temporary one, removed at the end.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& Path() const { return m_Path; }
    // Writes a file below the folder, with the folders it needs.
    void Write(const std::string& name, const std::string& bytes) const;

private:
    std::filesystem::path m_Path;
};

// A plain zip archive of these entries.
std::vector<unsigned char> ZipOf(const std::map<std::string, std::string>& entries);
