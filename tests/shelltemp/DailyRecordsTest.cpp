#include "shelltemp/DailyRecords.h"

#include <gtest/gtest.h>

#include "core/DataCollector.h"
#include "sim/virtual/VirtualTime.h"

namespace {

constexpr int64_t kWallStart = 1772352000'000'000'000;  // 2026-03-01 08:00:00

struct DailyRecordsTest : testing::Test {
    DailyRecordsTest() {
        sim::VirtualTime::start(7'000'500, kWallStart);
        zones.add("skin");
        records.start("today");
    }

    Json::Value handedOver() {
        Json::Value frame;
        frame["scene"] = "default";
        records.handOver(frame, zones, {{0, "front"}});
        return kelvo::DataCollector::getInstance().getData()["shelltemp"]["today"];
    }

    kelvo::ZoneTable zones;
    kelvo::DailyRecords records;
};

}  // namespace

TEST_F(DailyRecordsTest, areDueOnTheExactSecondOfEachHourAfterTheirStart) {
    const std::pair<int64_t, bool> cases[] = {
            {0, false},        {999, false},      {1000, false},      {3'599'999, false},
            {3'600'000, true}, {3'600'999, true}, {3'601'000, false}, {7'200'000, true}};
    for (const auto& [ms, due] : cases) {
        sim::VirtualTime::advanceTo(ms);
        EXPECT_EQ(records.hourIsFull(), due) << ms;
    }
}

TEST_F(DailyRecordsTest, handOverExtremesWithTheirFirstTimeAndTheLargestChange) {
    EXPECT_TRUE(handedOver().isNull()) << "no records yet";
    // ms, zone, fitted, previous
    const std::tuple<int64_t, int32_t, int32_t, int32_t> cycles[] = {
            {0, 40000, 30000, 30000},
            {60'000, 38000, 30500, 30000},
            {120'000, 41000, 29900, 30500},
            {180'000, 41000, 30500, 29900}};
    for (const auto& [ms, zone, fitted, previous] : cycles) {
        sim::VirtualTime::advanceTo(ms);
        records.recordTempData({{0, zone}, {9, zone}}, {{0, fitted}, {1, 5}}, {{0, previous}});
    }
    const Json::Value record = handedOver();
    EXPECT_EQ(record["scene"], "default");
    EXPECT_EQ(record["duration"], 180);
    for (const char* zone : {"skin", "9"}) {  // one without a type goes by its number
        EXPECT_EQ(record["temp"][zone]["min"]["temp"], 38000);
        EXPECT_EQ(record["temp"][zone]["min"]["time"], "20260301080100");
        EXPECT_EQ(record["temp"][zone]["max"]["temp"], 41000);
        EXPECT_EQ(record["temp"][zone]["max"]["time"], "20260301080200");
    }
    EXPECT_EQ(record["fitting-delta"].getMemberNames(), std::vector<std::string>{"front"})
            << "an index without a value before has made no change";
    EXPECT_EQ(record["fitting-delta"]["front"]["delta"], -600);
    EXPECT_EQ(record["fitting-delta"]["front"]["time"], "20260301080200");
}

TEST_F(DailyRecordsTest, forgetTheDayBefore) {
    records.recordTempData({{0, 40000}}, {}, {});
    records.start("today");
    EXPECT_TRUE(handedOver().isNull());
}
