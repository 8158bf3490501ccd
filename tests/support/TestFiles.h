#pragma once

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "pictures/Picture.h"

// A whole file.
std::string FileBytes(const std::string& path);

// A folder for the files of the running test, which ends with it.
class FolderTest : public testing::Test {
protected:
    FolderTest();
    ~FolderTest() override;

    std::string at(const std::string& name) const { return m_Folder + "/" + name; }
    // Makes the folders on the way, too; gives the path.
    std::string writeFile(const std::string& name, const std::string& bytes) const;
    std::string bytes(const std::string& name) const { return FileBytes(at(name)); }
    bool exists(const std::string& name) const { return std::filesystem::exists(at(name)); }
    // Names in the folder, dots first, sorted.
    std::vector<std::string> names() const;

    const std::string m_Folder;
};

// Every channel of every pixel differs from its neighbours', also from frame to frame; alpha among them, and
// the first pixel of frame 0 has colours without any.
fxhost::Picture SomePicture(unsigned width, unsigned height, unsigned depth, long number);

// Throws this exception with these parts in its text.
template <class Exception, class... Parts>
auto Says(const Parts&... parts) {
    return testing::Throws<Exception>(
        testing::Property(&std::exception::what, testing::AllOf(testing::HasSubstr(parts)...)));
}
