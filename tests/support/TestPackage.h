#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

// Creates a new folder for temporary files, and removes it with its content at the end.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& Path() const { return m_Path; }
    // Writes a file below the folder, and creates the folders on its path.
    void Write(const std::string& name, const std::string& bytes) const;

private:
    std::filesystem::path m_Path;
};

// Returns a zip archive that has these entries.
std::vector<unsigned char> ZipOf(const std::map<std::string, std::string>& entries);
