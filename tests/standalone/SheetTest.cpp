#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "standalone/Errors.h"
#include "standalone/bench/FrameSteps.h"
#include "standalone/sheet/ContactSheet.h"
#include "standalone/sheet/Variations.h"

namespace {

using namespace fxhost;
using testing::ElementsAre;

Picture Filled(unsigned width, unsigned height, std::vector<std::uint8_t> argb) {
    Picture picture(width, height, 8);
    for (std::size_t i = 0; i < picture.bytes.size(); ++i)
        picture.bytes[i] = argb[i % 4];
    return picture;
}

std::vector<int> At(const Picture& picture, unsigned x, unsigned y) {
    const std::uint8_t* pixel = picture.Row(y) + std::size_t{x} * 4;
    return {pixel[0], pixel[1], pixel[2], pixel[3]};
}

// Eight pixels lie around each cell, and eighteen more below it for the label.
TEST(ContactSheetTest, CellsStandInRowsOverAGround) {
    const Picture sheet = MakeContactSheet({{Filled(10, 6, {255, 200, 0, 0}), ""},
                                            {Filled(4, 4, {255, 0, 200, 0}), ""},
                                            {Filled(10, 6, {0, 9, 9, 9}), ""}},
                                           2, 100);
    EXPECT_EQ(sheet.width, 8u + 10 + 8 + 10 + 8);
    EXPECT_EQ(sheet.height, 8u + 2 * (6 + 18 + 8));
    EXPECT_THAT(At(sheet, 0, 0), ElementsAre(255, 40, 40, 40));
    EXPECT_THAT(At(sheet, 8, 8), ElementsAre(255, 200, 0, 0));
    EXPECT_THAT(At(sheet, 17, 13), ElementsAre(255, 200, 0, 0));
    EXPECT_THAT(At(sheet, 18, 13), ElementsAre(255, 40, 40, 40));
    EXPECT_THAT(At(sheet, 26, 8), ElementsAre(255, 0, 200, 0));
    // Nothing there: the checkerboard's two greys, 0.6 and 0.4 of 255.
    EXPECT_THAT(At(sheet, 8, 40), ElementsAre(255, 153, 153, 153));
    EXPECT_THAT(At(sheet, 16, 40), ElementsAre(255, 102, 102, 102));
}

TEST(ContactSheetTest, LargePicturesShrinkByWholeStepsWithColoursWeightedByAlpha) {
    Picture picture(4, 2, 8); // two boxes of 2x2: opaque red beside clear blue, and half-clear white
    const std::vector<std::uint8_t> red{255, 255, 0, 0}, clear{0, 0, 0, 255}, half{128, 255, 255, 255};
    for (unsigned i = 0; i < 8; ++i) {
        const auto& argb = i % 4 == 0 ? red : i % 4 == 1 ? clear : half;
        std::copy(argb.begin(), argb.end(), picture.bytes.begin() + i * 4);
    }
    const Picture sheet = MakeContactSheet({{picture, ""}}, 1, 2);
    EXPECT_EQ(sheet.width, 8u + 2 + 8);
    // Half red over grey 0.6: 127.5 + 0.5 * 153 = 204; white at 128 / 255: 128 + (127 / 255) * 153 = 204.2
    EXPECT_THAT(At(sheet, 8, 8), ElementsAre(255, 204, 77, 77));
    EXPECT_THAT(At(sheet, 9, 8), ElementsAre(255, 204, 204, 204));
}

TEST(ContactSheetTest, LabelsStayUnderTheirPicture) {
    const auto ink = [](const std::string& label) {
        const Picture sheet = MakeContactSheet({{Filled(30, 4, {255, 0, 0, 0}), label}}, 1, 100);
        std::size_t inside = 0, outside = 0;
        for (unsigned y = 12; y < sheet.height; ++y)
            for (unsigned x = 0; x < sheet.width; ++x)
                if (At(sheet, x, y)[1] == 230)
                    ++(x >= 8 && x < 38 && y < 30 ? inside : outside);
        return std::pair(inside, outside);
    };
    EXPECT_EQ(ink("").first, 0u);
    EXPECT_GT(ink("Amount 25, and much more").first, 30u);
    EXPECT_EQ(ink("Amount 25, and much more").second, 0u);
}

TEST(ContactSheetTest, SheetsThatAreTooLargeAreRefused) {
    EXPECT_THROW(MakeContactSheet(std::vector<SheetCell>(60, {Filled(300, 2, {255, 0, 0, 0}), ""}), 60, 300),
                 WrongUse);
}

TEST(VariationsTest, ValuesAreSplitByTheirTypesSeparator) {
    std::vector<Parameter> list = {{"amount", Parameter::FLOAT, "Amount"},
                                   {"tint", Parameter::COLOR, "Tint"}};
    const Variation numbers = ParseVariation("Amount=0, 25,50", list);
    EXPECT_THAT(numbers.texts, ElementsAre("0", "25", "50"));
    EXPECT_EQ(numbers.settings[1].value.Float(0), 25);
    const Variation colours = ParseVariation("tint=1,0,0; 0,0,1", list);
    EXPECT_THAT(colours.texts, ElementsAre("1,0,0", "0,0,1"));
    EXPECT_EQ(colours.settings[1].index, 1u);
    EXPECT_EQ(colours.settings[1].value.Float(2), 1);
    for (const char* text : {"amount", "amount=", "amount=1,,2", "other=1", "tint=1,0,0,0,0"})
        EXPECT_THROW(ParseVariation(text, list), WrongUse) << text;
}

TEST(SpreadTest, MedianAndTenthsOfKnownValues) {
    std::vector<double> values;
    for (int i = 20; i >= 0; --i)
        values.push_back(i);
    const Spread spread = SpreadOf(values);
    EXPECT_EQ(spread.median, 10);
    EXPECT_EQ(spread.low, 2);
    EXPECT_EQ(spread.high, 18);
    EXPECT_EQ(SpreadOf({3, 1}).median, 2);
    EXPECT_EQ(SpreadOf({}).median, 0);
}

} // namespace
