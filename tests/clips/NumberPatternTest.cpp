#include "clips/NumberPattern.h"

#include "tests/support/TestFiles.h"
#include "toolkit/Errors.h"

namespace {

using namespace fxhost;
using testing::ElementsAre;

TEST(NumberPatternTest, PlaceholderIsReplacedByThePaddedNumber) {
    const struct {
        const char* pattern;
        long number;
        const char* path;
    } rows[] = {{"a/in_%04d.exr", 7, "a/in_0007.exr"},
                {"%d.png", 12, "12.png"},
                {"out_##.png", 1234, "out_1234.png"},
                {"50%%_%02d#.png", 3, "50%_03#.png"},
                {"100%/a#b/c_###.png", 7, "100%/a#b/c_007.png"},
                {"f.@.exr", 7, "f.7.exr"},
                {"f_@@@@.exr", 7, "f_0007.exr"},
                {"f_$F4.exr", 7, "f_0007.exr"},
                {"f_$F.exr", 7, "f_7.exr"},
                {"me@home_##.png", 7, "me@home_07.png"}, // "#" has precedence
                {R"(a\#b_#_\\_50\%.png)", 7, R"(a#b_7_\_50%.png)"}};
    for (const auto& row : rows)
        EXPECT_EQ(NumberPattern::Parse("-o", row.pattern).value().path(row.number), row.path);
    for (const char* path : {"out.png", "100%.png", "a%s.png", "a%4d.png", "a%%d.png", "a%", "%d/a.png",
                             "##/a.png", R"(shot\#1.png)", "icon@2x.png", R"(a\*.png)"})
        EXPECT_FALSE(NumberPattern::Parse("-o", path)) << path;
    for (const char* path : {"a_%d_%d.png", "##_##.png", "$F_$F4.png"})
        EXPECT_THROW(NumberPattern::Parse("-o", path), WrongUse) << path;
}

TEST(NumberPatternTest, BackslashesAreRemovedFromPlainNames) {
    EXPECT_EQ(PlainPath(R"(a/shot\#1\%\?\x.png)"), R"(a/shot#1%?\x.png)");
    EXPECT_EQ(PlainPath("a?.png"), "a?.png");
}

class LeftoverTest : public FolderTest {};

TEST_F(LeftoverTest, ExistingNumbersAreListedAndOnlyLeftoversOfPlannedFramesRemoved) {
    for (const char* name : {"a_0003.png", "a_0001.png", "a_12345.png", "a_2.png", "a_0004.exr", "b_0005.png",
                             ".a_0006.4711.png", ".a_0007.png", ".b_0006.4711.png", ".a_0008.4712.png"})
        writeFile(name, "x");
    const auto pattern = NumberPattern::Parse("-i", at("a_####.png")).value();
    EXPECT_THAT(pattern.numbersOnDisk(), ElementsAre(1, 3, 12345));
    EXPECT_THAT(NumberPattern::Parse("--input", at("a_*.png")).value().numbersOnDisk(),
                ElementsAre(1, 3, 12345));
    EXPECT_THAT(NumberPattern::Parse("--input", at("*.none")).value().numbersOnDisk(), ElementsAre());
    EXPECT_THROW(NumberPattern::Parse("--output", at("a_*.png")), WrongUse);
    pattern.removeLeftovers({5, 6, 7}); // Frame 8 may be in work on another machine.
    EXPECT_FALSE(exists(".a_0006.4711.png"));
    EXPECT_EQ(names().size(), 9u);
}

} // namespace
