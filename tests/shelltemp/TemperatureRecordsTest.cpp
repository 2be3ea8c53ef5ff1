#include "shelltemp/TemperatureRecords.h"

#include "sim/VirtualTime.h"
#include "support/EngineTest.h"

namespace {

class TemperatureRecordsTest : public EngineTest {
  protected:
    TemperatureRecordsTest() { buildPhone(); }

    kelvo::TemperatureRecords records;
};

std::string label(int32_t index) {
    return "#" + std::to_string(index);
}

}  // namespace

TEST_F(TemperatureRecordsTest, keepsExtremesWithTheirTime) {
    const struct {
        int64_t timeMs;
        int32_t temp;
    } samples[] = {{0, 40000}, {5000, 42000}, {10000, 39000}, {15000, 42000}};
    for (const auto& sample : samples) {
        sim::VirtualTime::advanceTo(sample.timeMs);
        records.record({{4, sample.temp}}, {}, {});
    }
    const Json::Value zone = records.zonesAsJson(label)["#4"];
    EXPECT_EQ(zone["min"]["temp"], 39000);
    EXPECT_EQ(zone["min"]["time"], "20260301080010");
    EXPECT_EQ(zone["max"]["temp"], 42000);
    EXPECT_EQ(zone["max"]["time"], "20260301080005") << "the first time it was reached";
}

TEST_F(TemperatureRecordsTest, keepsTheLargestChangeWithItsSign) {
    records.record({}, {{0, 40000}, {1, 30000}}, {{0, 40100}});
    records.record({}, {{0, 40050}}, {{0, 40000}});
    const Json::Value deltas = records.deltasAsJson(label);
    EXPECT_EQ(deltas["#0"]["delta"], -100);
    EXPECT_FALSE(deltas.isMember("#1")) << "no value in the cycle before";
    records.clear();
    EXPECT_TRUE(records.empty());
}
