#include "core/Numeric.h"

#include <gtest/gtest.h>

#include <cmath>

TEST(Numeric, convertsAsTheTargetHardwareDoes) {
    const struct {
        double value;
        int32_t expected;
    } rows[] = {
            {38999.9, 38999},
            {-0.5, 0},
            {-1.9, -1},
            {2147483647.9, INT32_MAX},
            {2147483648.0, INT32_MAX},
            {-2147483648.9, INT32_MIN},
            {-2147483649.0, INT32_MIN},
            {INFINITY, INT32_MAX},
            {-INFINITY, INT32_MIN},
            {NAN, 0},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(kelvo::saturatingInt32(row.value), row.expected) << row.value;
    }
    EXPECT_EQ(kelvo::wrappingAdd(INT32_MAX, 1), INT32_MIN);
    EXPECT_EQ(kelvo::wrappingSub(INT32_MIN, 1), INT32_MAX);
    EXPECT_EQ(kelvo::wrappingMul(0x40000000, 2), INT32_MIN);
}
