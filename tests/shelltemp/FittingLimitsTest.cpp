#include "shelltemp/FittingLimits.h"

#include <gtest/gtest.h>

#include <limits>

using kelvo::DeltaHistory;
using kelvo::LimitedValue;

TEST(FittingLimitsTest, limitsJumpsFasterThanHalfADegreeASecond) {
    // previous, value, seconds, history, expected, recorded, why
    using Row = std::tuple<int32_t, int32_t, int32_t, DeltaHistory, int32_t, int32_t, const char*>;
    const Row cases[] = {
            {40000, 44000, 5, {100, 80}, 41000, 200, "twice the fastest change"},
            {40000, 36000, 5, {100, 80}, 39000, 200, "falling alike"},
            {40000, 40500, 1, {}, 40500, 500, "500 a second is believed"},
            {40000, 39500, 1, {}, 39500, 500, "falling, too"},
            {40000, 40501, 1, {}, 40125, 125, "501 is not; a steady shell moves at 125"},
            {40000, 42504, 5, {}, 42504, 500, "the rate is an integer: 2504 / 5 is 500"},
            {40000, 42505, 5, {}, 40625, 125, "501"},
            {40000, 44000, 1, {62}, 40125, 125, "2 * 62 is raised to 125"},
            {40000, 44000, 1, {63}, 40126, 126, "2 * 63 stands"},
            {40000, 44000, 1, {251}, 40500, 500, "capped at 500"},
            {0, 36000, 5, {}, 625, 125, "without a value before, a rise from 0"},
    };
    for (const auto& [previous, value, seconds, history, expected, recorded, why] : cases) {
        const LimitedValue result = kelvo::limitJump(previous, value, seconds, history);
        EXPECT_EQ(result.value, expected) << why;
        EXPECT_EQ(result.recorded, recorded) << why;
        EXPECT_EQ(result.limited, expected != value) << why;
        EXPECT_EQ(result.limit < 0, result.limited && value < previous) << why;
    }
}

TEST(FittingLimitsTest, wrapsInsteadOfOverflowing) {
    constexpr int32_t kMin = std::numeric_limits<int32_t>::min();
    constexpr int32_t kMax = std::numeric_limits<int32_t>::max();
    EXPECT_EQ(kelvo::limitJump(kMax, kMin, 1, {}).value, kMin) << "the difference wraps to 1";
    EXPECT_FALSE(kelvo::limitJump(0, kMin, 1, {}).limited) << "a magnitude that does not fit";
}

TEST(FittingLimitsTest, keepsTheLastFiveChanges) {
    DeltaHistory history;
    for (int32_t delta = 1; delta <= 7; ++delta) {
        kelvo::recordDelta(history, delta);
    }
    EXPECT_EQ(history, (DeltaHistory{3, 4, 5, 6, 7}));
}

TEST(FittingLimitsTest, believesTwentyDegreesAboveTheReference) {
    EXPECT_FALSE(kelvo::exceedsReference(50000, 30000));
    EXPECT_TRUE(kelvo::exceedsReference(50001, 30000));
}
