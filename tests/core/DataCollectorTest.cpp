#include "core/DataCollector.h"

#include <gtest/gtest.h>

#include "sim/virtual/VirtualTime.h"
#include "support/LogCapture.h"

using kelvo::DataCollector;

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
    EXPECT_EQ(collector.setData(kelvo::DC_PKG, "whole", Json::Value(5)), 0);
    collector.setData(kelvo::DC_PKG, "whole", "f", "makes it an object again");
    const Json::Value data = collector.getData();
    EXPECT_EQ(data.size(), 9U);
    for (const char* name : names) {
        EXPECT_EQ(data[name]["k"]["f"], name);
    }
    EXPECT_EQ(data["unknown"]["k"]["g"], "v");
    EXPECT_EQ(data["pkg"]["whole"].size(), 1U);
}

TEST(DataCollector, resetCountsWholeDaysOfUtcAndKeepsNames) {
    constexpr int64_t kDay = 86'400'000'000'000;
    const std::tuple<int64_t, int, const char*, bool> rows[] = {
            {20'001 * kDay - 1, 7, "nowDay=20000, mLastResetDay=20000", true},
            {20'007 * kDay - 1, 7, "nowDay=20006, mLastResetDay=20000", false},
            {20'007 * kDay, 7, "nowDay=20007, mLastResetDay=20007", true},
            {20'007 * kDay, 0, "nowDay=20007, mLastResetDay=20007", true},
            {20'007 * kDay - 1, 0, "nowDay=20006, mLastResetDay=20007", false},
    };
    LogCapture log;
    for (const auto& [nowNs, minDays, days, clears] : rows) {
        log.clear();
        sim::VirtualTime::start(0, nowNs);
        DataCollector::getInstance().setData(kelvo::DC_PKG, "key", "field", "value");
        DataCollector::getInstance().reset(minDays);
        EXPECT_EQ(log.count(ANDROID_LOG_DEBUG, std::string("DataCollector reset ") + days), 1u);
        EXPECT_EQ(DataCollector::getInstance().asJson() == "{\n\t\"pkg\" : null\n}\n", clears);
    }
}
