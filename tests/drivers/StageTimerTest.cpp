#include "drivers/StageTimer.h"

#include <gtest/gtest.h>

namespace {

using namespace fxhost;

TEST(SpreadTest, MedianAndPercentilesMatchKnownValues) {
    const Spread spread = SpreadOf({10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0});
    EXPECT_EQ(spread.median, 5);
    EXPECT_EQ(spread.low, 1);
    EXPECT_EQ(spread.high, 9);
    EXPECT_EQ(SpreadOf({3, 1}).median, 2);
}

} // namespace
