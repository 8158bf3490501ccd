#include "standalone/clips/NumberPattern.h"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "standalone/Errors.h"

namespace {

using namespace fxhost;
using testing::ElementsAre;
namespace fs = std::filesystem;

std::string Name(const std::string& pattern, long number) {
    return NumberPattern::Parse("-o", pattern).value().path(number);
}

TEST(NumberPatternTest, NumbersArePutWhereThePatternSays) {
    EXPECT_EQ(Name("a/in_%04d.exr", 7), "a/in_0007.exr");
    EXPECT_EQ(Name("%d.png", 12), "12.png");
    EXPECT_EQ(Name("out_##.png", 7), "out_07.png");
    EXPECT_EQ(Name("out_##.png", 1234), "out_1234.png");
    EXPECT_EQ(Name("50%%_%02d#.png", 3), "50%_03#.png");
    EXPECT_EQ(Name("100%/a#b/c_###.png", 7), "100%/a#b/c_007.png");
    for (const char* path :
         {"out.png", "100%.png", "a%s.png", "a%4d.png", "a%%d.png", "a%", "%d/a.png", "##/a.png"})
        EXPECT_FALSE(NumberPattern::Parse("-o", path)) << path;
    for (const char* path : {"a_%d_%d.png", "##_##.png"})
        EXPECT_THROW(NumberPattern::Parse("-o", path), WrongUse) << path;
}

TEST(NumberPatternTest, FindsItsFilesAndRemovesOnlyItsLeftovers) {
    const fs::path folder = fs::path(testing::TempDir()) / "fxhost_pattern";
    fs::remove_all(folder);
    fs::create_directories(folder);
    for (const char* name : {"a_0003.png", "a_0001.png", "a_12345.png", "a_2.png", "a_0004.exr", "b_0005.png",
                             ".a_0006.4711.png", ".a_0007.png", ".b_0006.4711.png", ".a_0008.4712.png"})
        std::ofstream(folder / name) << "x";
    const auto pattern = NumberPattern::Parse("-i", (folder / "a_####.png").string()).value();
    EXPECT_THAT(pattern.numbersOnDisk(), ElementsAre(1, 3, 12345));
    pattern.removeLeftovers({5, 6, 7});
    EXPECT_FALSE(fs::exists(folder / ".a_0006.4711.png"));
    EXPECT_TRUE(fs::exists(folder / ".a_0007.png") && fs::exists(folder / ".b_0006.4711.png"));
    EXPECT_TRUE(fs::exists(folder / ".a_0008.4712.png")); // somebody else's frame
    fs::remove_all(folder);
}

} // namespace
