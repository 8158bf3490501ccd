#include "clips/FrameList.h"

#include "clips/FrameRate.h"
#include <gtest/gtest.h>

#include "toolkit/Errors.h"

namespace {

using namespace fxhost;

TEST(FrameListTest, RangeWithOptionalStepListsItsFrames) {
    const std::pair<const char*, std::vector<long>> rows[] = {
        {"1-3", {1, 2, 3}}, {"7", {7}}, {"0-9x3", {0, 3, 6, 9}}, {"1001-1004x2", {1001, 1003}}};
    for (const auto& [text, frames] : rows) {
        const FrameRange range = FrameRange::Parse(text);
        std::vector<long> listed;
        for (std::size_t place = 0; place < range.size(); ++place)
            listed.push_back(range.at(place));
        EXPECT_EQ(listed, frames) << text;
        EXPECT_EQ(range.text(), text);
    }
}

TEST(FrameListTest, MalformedRangesShardsAndRatesAreRejected) {
    for (const char* text : {"", "a", "5-1", "-1", "1-", "1-5x0", "1-5x", "1-5,7", "1.5", "1-999999999999"})
        EXPECT_THROW(FrameRange::Parse(text), WrongUse) << text;
    for (const char* text : {"", "3", "0/8", "9/8", "3/", "/8", "3/0", "a/b"})
        EXPECT_THROW(Shard::Parse(text), WrongUse) << text;
    for (const char* text : {"", "0", "-5", "nan", "inf", "25fps", "1/0", "30000/", "2000", "5000/2"})
        EXPECT_THROW(FrameRate::Parse(text), WrongUse) << text;
}

TEST(FrameListTest, RoundedNtscRatesGiveTheirExactFractions) {
    const std::pair<const char*, FrameRate> rows[] = {
        {"24", {24, 1}},          {"25.0", {25, 1}},        {"23.976", {24000, 1001}},
        {"23.98", {24000, 1001}}, {"29.97", {30000, 1001}}, {"59.94", {60000, 1001}},
        {"12.5", {25, 2}},        {"0.5", {1, 2}},          {"60000/2002", {30000, 1001}}};
    for (const auto& [text, rate] : rows)
        EXPECT_EQ(FrameRate::Parse(text), rate) << text;
    EXPECT_DOUBLE_EQ(FrameRate::Parse("29.97").timeOf(30000), 1001);
}

} // namespace
