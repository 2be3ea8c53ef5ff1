#include "core/DataCollector.h"

#include <gtest/gtest.h>

#include "config/VirtualClock.h"
#include "support/LogCapture.h"

using kelvo::DataCollector;

namespace {

constexpr nsecs_t kDay = 86'400'000'000'000;

void fill() {
    DataCollector::getInstance().setData(kelvo::DC_PKG, "key", "field", "value");
}

bool isFilled() {
    return DataCollector::getInstance().getData()["pkg"].isObject();
}

}  // namespace

TEST(DataCollector, storesByTypeKeyAndField) {
    DataCollector& collector = DataCollector::getInstance();
    EXPECT_EQ(collector.asJson(), "null\n");
    const char* names[] = {"pkg",          "thermal",        "shelltemp",
                           "pkgcurrent",   "heatsource",     "heatlevelsource",
                           "exceptthread", "tsensorthermal", "unknown"};
    for (int32_t type = 0; type < 9; ++type) {
        EXPECT_EQ(collector.setData(static_cast<kelvo::DcType>(type), "k", "f", names[type]), 0);
    }
    collector.setData(static_cast<kelvo::DcType>(-1), "k", "g", "v");
    collector.setData(kelvo::DC_PKG, "whole", Json::Value(5));
    collector.setData(kelvo::DC_PKG, "whole", "f", "makes it an object again");
    const Json::Value data = collector.getData();
    EXPECT_EQ(data.size(), 9U);
    for (const char* name : names) {
        EXPECT_EQ(data[name]["k"]["f"], name);
    }
    EXPECT_EQ(data["unknown"]["k"]["g"], "v");
    EXPECT_EQ(data["pkg"]["whole"].size(), 1U);
}

TEST(DataCollector, resetKeepsNamesOnly) {
    fill();
    gVirtualTime = 20'000 * kDay;
    DataCollector::getInstance().reset(7);
    EXPECT_EQ(DataCollector::getInstance().asJson(), "{\n\t\"pkg\" : null\n}\n");
    fill();
    EXPECT_TRUE(isFilled());
}

TEST(DataCollector, resetCountsWholeDaysOfUtc) {
    DataCollector& collector = DataCollector::getInstance();
    LogCapture log;
    gVirtualTime = 20'001 * kDay - 1;
    collector.reset(7);
    fill();
    gVirtualTime = 20'007 * kDay - 1;
    collector.reset(7);
    EXPECT_TRUE(isFilled());
    EXPECT_EQ(log.count(ANDROID_LOG_DEBUG, "DataCollector reset nowDay=20006, mLastResetDay=20000"),
              1U);
    gVirtualTime = 20'007 * kDay;
    collector.reset(7);
    EXPECT_FALSE(isFilled());
    EXPECT_TRUE(log.has("DataCollector reset nowDay=20007, mLastResetDay=20007"));
}

TEST(DataCollector, resetZeroClearsUnlessTheClockWentBack) {
    gVirtualTime = 100 * kDay;
    fill();
    DataCollector::getInstance().reset(0);
    EXPECT_FALSE(isFilled());
    fill();
    gVirtualTime = 99 * kDay;
    DataCollector::getInstance().reset(0);
    EXPECT_TRUE(isFilled());
    gVirtualTime = 100 * kDay;
    DataCollector::getInstance().reset(0);
    EXPECT_FALSE(isFilled());
}
