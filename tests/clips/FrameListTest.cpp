#include "clips/FrameList.h"

#include "clips/FrameRate.h"
#include <gtest/gtest.h>

#include "toolkit/Errors.h"

namespace {

using namespace fxhost;

TEST(FrameListTest, PartsListTheirFramesInOrderAndOnce) {
    const struct {
        const char* text;
        long end; // of the input
        std::vector<long> frames;
        const char* shown;
        long last;
    } rows[] = {{"1-3", 9, {1, 2, 3}, "1-3", 3},
                {"7", 9, {7}, "7", 7},
                {"0-9x3", 9, {0, 3, 6, 9}, "0, 3, 6, 9", 9},
                {"1001-1004x2", 9, {1001, 1003}, "1001, 1003", 1003},
                {"1,3,5-9x2,8-", 10, {1, 3, 5, 7, 8, 9, 10}, "1, 3, 5, 7-10", 9},
                {"4-x3", 11, {4, 7, 10}, "4, 7, 10", 0},
                {"3-5, 1-4", 9, {1, 2, 3, 4, 5}, "1-5", 5},
                {"12-", 9, {}, "", 0}};
    for (const auto& row : rows) {
        const FrameList list = FrameList::Parse(row.text);
        EXPECT_EQ(list.numbers(row.end), row.frames) << row.text;
        EXPECT_EQ(NumbersText(row.frames), row.shown);
        EXPECT_EQ(list.last(), row.last) << row.text;
    }
    EXPECT_EQ(NumbersText({1, 3, 5, 7}, 2), "1, 3, ...");
}

TEST(FrameListTest, MalformedRangesShardsAndRatesAreRejected) {
    for (const char* text :
         {"", "a", "5-1", "-1", "-", "1-5x0", "1-5x", "1-5,", ",", "1--3", "1.5", "1-999999999999"})
        EXPECT_THROW(FrameList::Parse(text), WrongUse) << text;
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
