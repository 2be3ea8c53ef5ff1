#include "shelltemp/AbnormalZones.h"

#include <gtest/gtest.h>

#include "sim/virtual/VirtualTime.h"
#include "support/LogCapture.h"

using kelvo::AbnormalTZoneData;
using kelvo::AbnormalZones;
using kelvo::ThermalZone;
using kelvo::ZoneState;

namespace {

const ThermalZone kCpu{7, "cpu"};
const ThermalZone kGpu{8, "gpu"};

struct AbnormalZonesTest : testing::Test {
    void fail(const ThermalZone& zone, int times) {
        for (int i = 0; i < times; ++i) {
            zones.recordAbnTZone(zone, -1, ZoneState::READ_FAILED);
        }
    }

    LogCapture log;
    AbnormalZones zones;
};

}  // namespace

TEST_F(AbnormalZonesTest, listsAZoneOnceItFailsMoreOftenThanTheLimit) {
    fail(kCpu, 60);
    EXPECT_FALSE(zones.badZonesChanged());
    fail(kCpu, 1);
    EXPECT_TRUE(zones.badZonesChanged());
    fail(kCpu, 1);
    EXPECT_EQ(zones.badZones(), std::vector<int32_t>{7});
    EXPECT_TRUE(log.has("Get temp(tz:7) still failed! add list(size:1)"));
}

TEST_F(AbnormalZonesTest, countsAnewAfterAGoodReading) {
    fail(kCpu, 60);
    zones.recordGood(kCpu);
    zones.recordGood(kCpu);
    EXPECT_EQ(log.count(ANDROID_LOG_INFO, "The tzone 7 has been restored."), 1u);
    fail(kCpu, 60);
    EXPECT_TRUE(zones.badZones().empty());
}

TEST_F(AbnormalZonesTest, recordsTheFirstAndTheLatestFailureOfAZone) {
    sim::VirtualTime::start(0, 1772352000'000'000'000);  // 2026-03-01 08:00:00
    fail(kCpu, 1);
    zones.recordGood(kCpu);
    sim::VirtualTime::advanceTo(5000);
    zones.recordAbnTZone(kCpu, 115001, ZoneState::OUT_OF_RANGE);
    const AbnormalTZoneData& data = zones.records().at(7);
    EXPECT_EQ(std::tie(data.state, data.temp, data.failCount, data.totalCount, data.tzIndex),
              std::make_tuple(3, 115001, 1, 2, 7));
    EXPECT_EQ(data.firstTime + " " + data.lastTime, "20260301080000 20260301080005");
    EXPECT_EQ(data.tzName, "cpu");
    zones.clear();
    EXPECT_TRUE(zones.records().empty());
}

TEST_F(AbnormalZonesTest, neverCountsAHalServiceAgainstAZone) {
    zones.setLimit(0);
    for (int i = 0; i < 2; ++i) {
        zones.recordAbnTZone(kCpu, -1, ZoneState::HAL_FAILED);
    }
    EXPECT_EQ(zones.records().at(-1).totalCount, 2);
    EXPECT_FALSE(zones.badZonesChanged());
    EXPECT_EQ(log.count("Get hal service failed(state:2), not tzone exception."), 2u);
    EXPECT_FALSE(log.has("The tzone 7 has been restored."));
}

TEST_F(AbnormalZonesTest, listsZonesAgainWhenTheirFailuresInterleave) {
    zones.setLimit(0);
    for (int i = 0; i < 2; ++i) {
        fail(kCpu, 1);
        fail(kGpu, 1);
    }
    EXPECT_EQ(zones.badZones(), (std::vector<int32_t>{7, 8, 7, 8}));
}
