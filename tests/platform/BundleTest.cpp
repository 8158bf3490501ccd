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

TEST(BundleTest, TheResourcesOfABundleAreInContentsResources) {
    const std::string place = ::testing::TempDir() + "Some Effect.plugin";
    std::filesystem::create_directories(place);
    const CFURLRef folder = MakeUrl(place + "/");
    const CFBundleRef bundle = CFBundleCreate(kCFAllocatorDefault, folder);
    std::filesystem::remove_all(place);
    EXPECT_EQ(CFBundleCreate(kCFAllocatorDefault, folder), nullptr) << "no folder, no bundle";
    CFRelease(folder); // the bundle needs it no more
    ASSERT_NE(bundle, nullptr);
    const CFURLRef resources = CFBundleCopyResourcesDirectoryURL(bundle);
    CFRelease(bundle);
    const std::string expected = place + "/Contents/Resources";
    UInt8 path[1024];
    const auto exactSize = static_cast<CFIndex>(expected.size() + 1);
    EXPECT_FALSE(CFURLGetFileSystemRepresentation(resources, 1, path, exactSize - 1));
    CFRelease(CFRetain(resources)); // one reference is left
    ASSERT_TRUE(CFURLGetFileSystemRepresentation(resources, 1, path, exactSize));
    EXPECT_EQ(reinterpret_cast<const char*>(path), expected);
    CFRelease(resources);
}

TEST(BundleTest, EmptyPathsAndNullGiveNull) {
    EXPECT_EQ(MakeUrl(""), nullptr);
    EXPECT_EQ(CFBundleCreate(kCFAllocatorDefault, nullptr), nullptr);
    EXPECT_EQ(CFBundleCopyResourcesDirectoryURL(nullptr), nullptr);
}

} // namespace
