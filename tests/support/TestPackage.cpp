#include "tests/support/TestPackage.h"

#include <atomic>
#include <fstream>
#include <iterator>
#include <unistd.h>
#include <zip.h>

TemporaryFolder::TemporaryFolder() {
    static std::atomic<int> counter{0};
    m_Path = std::filesystem::temp_directory_path() /
             ("fx-test-" + std::to_string(getpid()) + "-" + std::to_string(counter++));
    std::filesystem::create_directories(m_Path);
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_Path, ignored);
}

void TemporaryFolder::Write(const std::string& name, const std::string& bytes) const {
    const auto path = m_Path / name;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
}

std::vector<unsigned char> ZipOf(const std::map<std::string, std::string>& entries) {
    const TemporaryFolder folder;
    const std::string path = folder.Path() / "archive.zip";
    zip_t* const archive = zip_open(path.c_str(), ZIP_CREATE, nullptr);
    for (const auto& [name, bytes] : entries) {
        zip_source_t* const source = zip_source_buffer(archive, bytes.data(), bytes.size(), 0);
        zip_file_add(archive, name.c_str(), source, ZIP_FL_OVERWRITE);
    }
    zip_close(archive);
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}
