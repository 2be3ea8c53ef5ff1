#include "thermalstatus/KelvoThermalStatus.h"

#include "core/MessageManager.h"
#include "sim/virtual/VirtualScheduler.h"
#include "support/EngineTest.h"

namespace {

std::string list(int first, int count = 21) {
    std::string text = "[";
    for (int i = 0; i < count; ++i) {
        text += (i > 0 ? "," : "") + std::to_string(first + i);
    }
    return text + "]";
}

// Thresholds 30, 31, … °C and 29, 30, … °C; the status is 100 above the level.
struct KelvoThermalStatusTest : EngineTest {
    void start(const std::string& trip, const std::string& down, const std::string& area,
               const std::string& broadcast = "{}") {
        startWithoutTemp(",'thermal_status_model':{'temp_threshold':" + trip +
                         ",'temp_threshold_down':" + down + ",'thermal_status':" + area +
                         ",'thermal_status_report':[1]},'shell_temp_broadcast':" + broadcast);
        phone().perform(sim::Listen{"l", 10050});
        takeCalls();
    }
    void start() { start(list(30), list(29), list(100)); }
    Lines callsAt(int32_t temp) {
        engine().onShellTempChanged(temp);
        sim::VirtualScheduler::get().handleMessages();
        return takeCalls();
    }
    static KelvoThermalStatus& engine() { return KelvoThermalStatus::getInstance(); }
};

}  // namespace

TEST_F(KelvoThermalStatusTest, risesAndFallsWithItsOwnThresholds) {
    start();
    // temp, calls, why
    const std::tuple<int32_t, Lines, const char*> steps[] = {
            {29900, {"status 100"}, "the first decision always tells; below the band"},
            {30200, {"broadcast 100 30200"}, "30.2 is in the hold band of level 0"},
            {39600, {"status 109", "broadcast 109 39600"}, "several levels at once"},
            {41200, {"status 111", "broadcast 111 41200"}, ""},
            {41900, {}, "the same whole degree"},
            {40500, {"broadcast 111 40500"}, "hold band: 40 < c < 42"},
            {39900, {"status 110", "broadcast 110 39900"}, "falling: 39.9 >= 29 + 10"},
            {41000, {"status 111", "broadcast 111 41000"}, "exactly at a rising threshold"},
            {40000, {"broadcast 111 40000"}, "exactly at its own falling threshold: found again"},
            {55900, {"status 120", "broadcast 120 55900"}, "the top"},
            {56000, {"broadcast 120 56000"}, "leaving the broadcast band"},
            {57000, {}, "outside it"},
            {20000, {"status 100", "broadcast 100 20000"}, "all the way down"},
    };
    for (const auto& [temp, calls, why] : steps) {
        EXPECT_EQ(callsAt(temp), calls) << temp << " " << why;
    }
}

TEST_F(KelvoThermalStatusTest, decidesNothingWithoutAllThresholds) {
    start(list(30, 20), list(29), list(100, 20));
    EXPECT_EQ(callsAt(41000), Lines{"broadcast -1 41000"});
    EXPECT_TRUE(log.has("thermal_status_model is wrong! tripTemps:20, tripDownTemps:21 "));
    std::vector<int> trip(21, 30);
    std::vector<int> down(20, 29);
    std::vector<int> none;
    EXPECT_EQ(engine().dynamicConfig(none, down, none), 0) << "20 entries are none";
    EXPECT_EQ(engine().dynamicConfig(trip, down, none), 1);
    EXPECT_EQ(callsAt(45000), (Lines{"status -1", "broadcast -1 45000"}))
            << "level 20 has no status of its own";
}

TEST_F(KelvoThermalStatusTest, keepsTheLevelOverAReload) {
    start();
    callsAt(41000);
    engine().reload();
    EXPECT_EQ(engine().getThermalStatus(), -1);
    EXPECT_EQ(callsAt(40500), Lines{"broadcast -1 40500"});
    EXPECT_EQ(callsAt(45000), (Lines{"status 115", "broadcast 115 45000"}));
}

TEST_F(KelvoThermalStatusTest, refusesListsOfDifferentLengths) {
    start(list(30), list(30), list(100, 20));
    EXPECT_TRUE(log.has("Invalid temp threshold."));
    EXPECT_EQ(log.errors("Parse thermal status config faild."), 1u);
}

TEST_F(KelvoThermalStatusTest, saysWhichEntryFalls) {
    start("[30,25]", list(29), list(100));
    EXPECT_TRUE(log.has("config[i-1] i=1, value=30"));
    EXPECT_TRUE(log.has("Wrong trip temp config"));
    EXPECT_TRUE(log.has("Get trip temp faild."));
}

TEST_F(KelvoThermalStatusTest, broadcastsInItsBandOnly) {
    start(list(30), list(29), list(100), "{'start_end_values':[35,'x']}");
    EXPECT_TRUE(log.has("KelvoThermalStatus 35,55")) << "a wrong bound keeps its default";
    EXPECT_EQ(callsAt(34999), Lines{"status 104"});
    EXPECT_EQ(callsAt(35000), (Lines{"status 105", "broadcast 105 35000"}));
}

TEST_F(KelvoThermalStatusTest, broadcastsNothingWhenDisabled) {
    start(list(30), list(29), list(100), "{'disable':1}");
    EXPECT_EQ(callsAt(40000), Lines{"status 110"});
}

TEST_F(KelvoThermalStatusTest, reportsHeatSourcesWhileTheMonitorRuns) {
    start();
    const std::pair<int32_t, size_t> steps[] = {
            {38000, 0}, {38001, 0}, {39000, 1}, {36000, 2}, {35999, 2}, {38000, 2}, {39001, 3},
    };
    for (const auto& [temp, reports] : steps) {
        callsAt(temp);
        EXPECT_EQ(log.count("MessageManager handling message:13 json:"), reports) << temp;
    }
}
