#include "tests/support/TestFiles.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <unistd.h>

namespace fs = std::filesystem;

FolderTest::FolderTest()
    : m_Folder(testing::TempDir() + "fxhost_" +
               testing::UnitTest::GetInstance()->current_test_info()->name() + "_" +
               std::to_string(getpid())) {
    fs::remove_all(m_Folder);
    fs::create_directories(m_Folder);
}

FolderTest::~FolderTest() {
    fs::remove_all(m_Folder);
}

std::string FolderTest::writeFile(const std::string& name, const std::string& bytes) const {
    fs::create_directories(fs::path(at(name)).parent_path());
    std::ofstream(at(name), std::ios::binary) << bytes;
    return at(name);
}

std::vector<std::string> FolderTest::names() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(m_Folder))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

std::string FileBytes(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

fxhost::Picture SomePicture(unsigned width, unsigned height, unsigned depth, long number) {
    fxhost::Picture picture(width, height, depth);
    auto* words = reinterpret_cast<std::uint16_t*>(picture.bytes.data());
    auto* floats = reinterpret_cast<float*>(picture.bytes.data());
    for (std::size_t i = 0; i < std::size_t{width} * height * 4; ++i) {
        const std::size_t value = i * 31 + static_cast<std::size_t>(number) * 57;
        if (depth == 8)
            picture.bytes[i] = static_cast<std::uint8_t>(value);
        else if (depth == 16)
            words[i] = static_cast<std::uint16_t>(value * 97 % 32769);
        else
            floats[i] = static_cast<float>(value % 1000) / 800;
    }
    return picture;
}
