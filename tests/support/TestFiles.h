#pragma once

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "pictures/Picture.h"

// Contents of a file; empty when it cannot be read.
std::string FileBytes(const std::string& path);

// Gives the running test a temporary folder, which is deleted after the test.
class FolderTest : public testing::Test {
protected:
    FolderTest();
    ~FolderTest() override;

    std::string at(const std::string& name) const { return m_Folder + "/" + name; }
    // Also creates missing parent folders. Returns the path.
    std::string writeFile(const std::string& name, const std::string& bytes) const;
    std::string bytes(const std::string& name) const { return FileBytes(at(name)); }
    bool exists(const std::string& name) const { return std::filesystem::exists(at(name)); }
    // Sorted names of the entries of the folder, including hidden ones.
    std::vector<std::string> names() const;

    const std::string m_Folder;
};

// A picture in which every channel of every pixel, alpha included, differs from its neighbours and from other
// frame numbers. The first pixel of frame 0 has alpha 0 and nonzero colours.
fxhost::Picture SomePicture(unsigned width, unsigned height, unsigned depth, long number);

// Matches a callable that throws this exception with a text that contains these parts.
template <class Exception, class... Parts>
auto Says(const Parts&... parts) {
    return testing::Throws<Exception>(
        testing::Property(&std::exception::what, testing::AllOf(testing::HasSubstr(parts)...)));
}
