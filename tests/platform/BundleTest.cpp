#include "platform/CoreFoundation.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>

namespace {

CFURLRef MakeUrl(const std::string& path) {
    return CFURLCreateFromFileSystemRepresentation(kCFAllocatorDefault,
                                                   reinterpret_cast<const UInt8*>(path.data()),
                                                   static_cast<CFIndex>(path.size()), 1);
}

class BundleTest : public ::testing::Test {
protected:
    void SetUp() override { std::filesystem::create_directories(m_Folder); }
    void TearDown() override { std::filesystem::remove_all(m_Folder); }

    const std::string m_Folder = ::testing::TempDir() + "Some Effect.plugin";
};

TEST_F(BundleTest, ResourcesLieInContentsResources) {
    const CFURLRef folder = MakeUrl(m_Folder + "/");
    const CFBundleRef bundle = CFBundleCreate(kCFAllocatorDefault, folder);
    CFRelease(folder); // the bundle needs it no more
    ASSERT_NE(bundle, nullptr);
    const CFURLRef resources = CFBundleCopyResourcesDirectoryURL(bundle);
    CFRelease(bundle);

    const std::string expected = m_Folder + "/Contents/Resources";
    UInt8 path[1024];
    ASSERT_TRUE(CFURLGetFileSystemRepresentation(resources, 1, path, sizeof path));
    EXPECT_EQ(reinterpret_cast<const char*>(path), expected);

    const auto exactSize = static_cast<CFIndex>(expected.size() + 1);
    EXPECT_TRUE(CFURLGetFileSystemRepresentation(resources, 1, path, exactSize));
    EXPECT_FALSE(CFURLGetFileSystemRepresentation(resources, 1, path, exactSize - 1));
    CFRelease(CFRetain(resources));
    EXPECT_TRUE(CFURLGetFileSystemRepresentation(resources, 1, path, exactSize)) << "one reference is left";
    CFRelease(resources);
}

TEST_F(BundleTest, NoFolderNoBundle) {
    const CFURLRef nowhere = MakeUrl(m_Folder + "/missing");
    EXPECT_EQ(CFBundleCreate(kCFAllocatorDefault, nowhere), nullptr);
    CFRelease(nowhere);
    EXPECT_EQ(MakeUrl(""), nullptr);
    EXPECT_EQ(CFBundleCreate(kCFAllocatorDefault, nullptr), nullptr);
    EXPECT_EQ(CFBundleCopyResourcesDirectoryURL(nullptr), nullptr);
}

} // namespace
