// What the line a second of a live run is made of.

#include <gtest/gtest.h>

#include "AskedScene.h"
#include "KelvodReport.h"
#include "StatusLine.h"
#include "support/Json.h"

namespace {

using namespace std::chrono_literals;

TEST(KelvosimLevel, isTheOneThatCanHoldWithTheStatus) {
    const ThermalThresholds levels{{-1, 36, 38, 40}, {-1, 35, 37, 39}, {0, 0, 1, 1}};
    // status, celsius, before, level
    const std::tuple<int32_t, double, std::optional<int32_t>, std::optional<int32_t>> rows[] = {
            {0, 20, {}, 0},   {0, 35.5, {}, 0}, {0, 35.5, 1, 1}, {0, 36, 0, 1},   {0, 35, 1, 1},
            {0, 34.9, 1, 0},  {1, 37.5, 1, 2},  {1, 39.5, 1, 2}, {1, 39.5, 2, 2}, {1, 39.5, 3, 3},
            {1, 39.5, {}, 2}, {1, 50, {}, 3},   {5, 37, 1, {}},  {1, 20, {}, {}},
    };
    for (const auto& [status, celsius, before, level] : rows) {
        EXPECT_EQ(levelOf(levels, status, celsius, before), level) << status << " at " << celsius;
    }
    EXPECT_EQ(levelOf({}, 0, 20, 1), std::nullopt) << "no thresholds";
}

TEST(KelvosimHeatSource, isTheHottestComponent) {
    Json::Value report;
    EXPECT_EQ(mainHeatSource(report), std::nullopt);
    report["cpu"]["avgHeat"] = 300;
    report["gpu"]["avgHeat"] = 500;
    report["wifi"] = "broken";
    EXPECT_EQ(mainHeatSource(report), "gpu");
    report["cpu"]["avgHeat"] = 0;
    report["gpu"]["avgHeat"] = -1;
    EXPECT_EQ(mainHeatSource(report), std::nullopt);
    EXPECT_EQ(mainHeatSource("text"), std::nullopt);
}

TEST(KelvosimScene, followsWhatTheDaemonWasTold) {
    sim::Scenario scenario;
    scenario.config.main =
            json("{'shell_temp_fitting_model':{" + scene("default", 0, "a") + "," +
                 scene("wirless_charge", 0, "a") + "," + scene("screen_fold", 0, "a") + "}}");
    AskedScene asked(scenario);
    const AskedScene::Time start;
    const auto tell = [&](std::chrono::seconds at, uint32_t code, int32_t value) {
        asked.tell(sim::Transact{code, {value}, {}, 1000}, start + at);
        return asked.current(start + at);
    };
    EXPECT_EQ(asked.current(start), "default");
    EXPECT_EQ(tell(1s, 24, 2), "screen_fold");
    EXPECT_EQ(tell(2s, 19, 1), "screen_fold");
    EXPECT_EQ(asked.current(start + 6999ms), "screen_fold");
    EXPECT_EQ(asked.current(start + 7s), "flashon");
    EXPECT_EQ(tell(8s, 19, 0), "default") << "no models for the lamp, so nothing to roll back to";
    asked.tell(sim::Health{false, false, true}, start + 9s);
    EXPECT_EQ(tell(10s, 19, 1), "wirless_charge") << "charging comes before the lamp";
    EXPECT_EQ(asked.current(start + 20s), "wirless_charge");
    EXPECT_EQ(tell(21s, 4, 1), "wirless_charge");
    asked.restart();
    EXPECT_EQ(asked.current(start + 22s), "default");
}

TEST(KelvosimLine, showsADashForWhatIsNotKnown) {
    sim::Scenario scenario;
    const StatusLine line(scenario);
    PhoneState state;
    state.timeMs = 61'000;
    state.scene = "default";
    const std::string alone = line.line(state);
    EXPECT_EQ(alone.find("00:01:01    -      -      -       -        -            -"), 0u) << alone;
    EXPECT_NE(alone.find("kelvod does not answer"), std::string::npos);
    state.kelvod = KelvodReport{38.04, 5, 1, 27, "cpu", 1};
    state.hottestZone = sim::ZoneSpec{"cpu-1-3", 53640};
    EXPECT_EQ(line.line(state),
              "00:01:01    38.0   5      1       27       cpu          default         "
              "cpu-1-3 53.6");
    EXPECT_EQ(StatusLine::heading().find("scene"), line.line(state).find("default"));
}

}  // namespace
