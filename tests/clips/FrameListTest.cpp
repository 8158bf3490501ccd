#include "standalone/clips/FrameList.h"

#include <gtest/gtest.h>
#include <set>

#include "standalone/Errors.h"

namespace {

using namespace fxhost;

TEST(FrameListTest, RangesAreReadAndWrittenBack) {
    const struct {
        const char* text;
        long first, last, step;
        std::size_t size;
    } rows[] = {{"1-240", 1, 240, 1, 240},
                {"7", 7, 7, 1, 1},
                {"0-9x3", 0, 9, 3, 4},
                {"1001-1004x2", 1001, 1004, 2, 2}};
    for (const auto& row : rows) {
        const FrameRange range = FrameRange::Parse(row.text);
        EXPECT_EQ(range.first, row.first) << row.text;
        EXPECT_EQ(range.last, row.last) << row.text;
        EXPECT_EQ(range.step, row.step) << row.text;
        EXPECT_EQ(range.size(), row.size) << row.text;
        EXPECT_EQ(range.text(), row.text);
    }
    EXPECT_EQ(FrameRange::Parse("1001-1004x2").at(1), 1003);
}

TEST(FrameListTest, WhatIsNoRangeShardOrRateIsRefused) {
    for (const char* text : {"", "a", "5-1", "-1", "1-", "1-5x0", "1-5x", "1-5,7", "1.5", "1-999999999999"})
        EXPECT_THROW(FrameRange::Parse(text), WrongUse) << text;
    for (const char* text : {"", "3", "0/8", "9/8", "3/", "/8", "3/0", "a/b"})
        EXPECT_THROW(Shard::Parse(text), WrongUse) << text;
    for (const char* text : {"", "0", "-5", "nan", "inf", "25fps", "1/0", "30000/", "2000", "5000/2"})
        EXPECT_THROW(FrameRate::Parse(text), WrongUse) << text;
}

TEST(FrameListTest, ShardsTakeEveryFrameOnce) {
    std::multiset<std::size_t> taken;
    for (int k = 1; k <= 8; ++k)
        for (std::size_t place = 0; place < 21; ++place)
            if (Shard::Parse(std::to_string(k) + "/8").has(place))
                taken.insert(place);
    EXPECT_EQ(taken.size(), 21u);
    EXPECT_EQ(std::set<std::size_t>(taken.begin(), taken.end()).size(), 21u);
    EXPECT_TRUE(Shard::Parse("3/8").has(2) && Shard::Parse("3/8").has(10));
}

TEST(FrameListTest, RoundedRatesMeanTheirFractions) {
    const struct {
        const char* text;
        FrameRate rate;
    } rows[] = {{"24", {24, 1}},
                {"25.0", {25, 1}},
                {"23.976", {24000, 1001}},
                {"23.98", {24000, 1001}},
                {"29.97", {30000, 1001}},
                {"59.94", {60000, 1001}},
                {"12.5", {25, 2}},
                {"60000/2002", {30000, 1001}},
                {"0.5", {1, 2}}};
    for (const auto& row : rows)
        EXPECT_EQ(FrameRate::Parse(row.text), row.rate) << row.text;
    EXPECT_DOUBLE_EQ(FrameRate::Parse("29.97").timeOf(30000), 1001);
}

} // namespace
