#include "config/TimeUtils.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <limits>

#include "VirtualClock.h"
#include "support/LogCapture.h"

namespace {

constexpr nsecs_t kSecond = 1'000'000'000;

}  // namespace

TEST(TimeUtils, stampsAreLocalTime) {
    setenv("TZ", "XYZ-8", 1);
    EXPECT_EQ(kelvo::getTimestamp(0), "19700101080000");
    EXPECT_EQ(kelvo::getTimestamp(951'782'399), "20000229075959");
    setenv("TZ", "XYZ+5", 1);  // a phone changes its zone while the daemon runs
    EXPECT_EQ(kelvo::getTimestamp(0), "19691231190000");
}

TEST(TimeUtils, presentTimeIsTheWallClock) {
    setenv("TZ", "XYZ-8", 1);
    gVirtualTime = 57'600 * kSecond - 1;
    LogCapture log;
    EXPECT_EQ(kelvo::getTimestamp(), "19700101235959");
    EXPECT_EQ(kelvo::getLocalDay(), "19700101");
    gVirtualTime += 1;
    EXPECT_EQ(kelvo::getLocalDay(), "19700102");
    EXPECT_EQ(log.count(ANDROID_LOG_DEBUG, "getLocalDay: 19700102"), 1U);
}

TEST(TimeUtils, timeThatCannotBeConvertedGivesEmptyText) {
    LogCapture log;
    EXPECT_EQ(kelvo::getTimestamp(std::numeric_limits<long>::max()), "");
    EXPECT_EQ(log.count(ANDROID_LOG_ERROR, "getTimestamp Fail"), 1U);
}
