#include "base/Numeric.h"

#include <gtest/gtest.h>

#include <cmath>

TEST(Numeric, conversionTruncatesAndSaturates) {
    const std::pair<double, int32_t> cases[] = {{2147483647.9, INT32_MAX},
                                                {2147483648.0, INT32_MAX},
                                                {-2147483648.9, INT32_MIN},
                                                {-2147483649.0, INT32_MIN},
                                                {-0.9, 0},
                                                {std::nan(""), 0}};
    for (const auto& [value, result] : cases) {
        EXPECT_EQ(kelvo::saturatingInt32(value), result) << value;
    }
}
