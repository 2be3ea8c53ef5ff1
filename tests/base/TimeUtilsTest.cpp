#include "base/TimeUtils.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <limits>

#include "support/LogCapture.h"

TEST(TimeUtils, stampsAreLocalTime) {
    setenv("TZ", "XYZ-8", 1);
    EXPECT_EQ(kelvo::getTimestamp(951'782'399), "20000229075959");
}

TEST(TimeUtils, timeThatCannotBeConvertedGivesEmptyText) {
    LogCapture log;
    EXPECT_EQ(kelvo::getTimestamp(std::numeric_limits<long>::max()), "");
    EXPECT_EQ(log.errors("getTimestamp Fail"), 1U);
}
