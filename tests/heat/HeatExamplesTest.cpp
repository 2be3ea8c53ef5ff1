// What the daemon calls the main heat source is what the examples' plants heat most with.

#include <gmock/gmock.h>

#include <algorithm>

#include "heat/HeatProcessCenter.h"
#include "sim/plant/Plant.h"
#include "sim/scenario/ScenarioParser.h"
#include "support/EngineTest.h"

namespace {

struct Report {
    int64_t timeMs;
    Json::Value detail;
    std::string main() const {
        return std::ranges::max(detail.getMemberNames(), {},
                                [this](auto& name) { return heat(name); });
    }
    int32_t heat(const std::string& name) const { return detail[name]["avgHeat"].asInt(); }
};

struct HeatExamplesTest : EngineTest {
    void startExample(const std::string& name) {
        scenario = sim::loadScenario(std::string(KELVO_EXAMPLES) + "/" + name + "/scenario.json");
        startPhone();
    }
    /** The reports that a listener gets, without the one at the start of monitoring. */
    std::vector<Report> play(const std::string& name) {
        startExample(name);
        std::vector<Report> reports;
        phone().setListener([&](const sim::Event& event) {
            if (event.name == "notify_component_heat") {
                reports.push_back({event.timeMs, event.members.back().second});
            }
        });
        phone().perform(sim::Listen{"l", 10050});
        phone().runUntil(scenario.durationMs);
        EXPECT_GT(reports.size(), 3U);
        reports.erase(reports.begin());
        return reports;
    }
    /** Mean power (W) of a source of the plant. */
    double power(const std::string& name, int64_t fromMs, int64_t toMs) const {
        sim::Plant plant(*scenario.plant);
        const auto& sources = plant.params().sources;
        const auto source = static_cast<size_t>(
                std::ranges::find(sources, name, &sim::PlantParams::Source::name) -
                sources.begin());
        double sum = 0;
        int count = 0;
        for (int64_t t = fromMs / 1000; t < toMs / 1000; ++t, ++count) {
            plant.advanceTo(t);
            sum += plant.sourcePower(source);
        }
        return sum / count;
    }
};

}  // namespace

TEST_F(HeatExamplesTest, aGameHeatsThroughItsProcessors) {
    int64_t before = 275000;
    for (const Report& report : play("game")) {
        const double cpu = power("cpu", before, report.timeMs);
        const double gpu = power("gpu", before, report.timeMs);
        EXPECT_NEAR(static_cast<double>(report.heat("cpu")) / report.heat("gpu"), cpu / gpu, 0.15)
                << report.timeMs;
        EXPECT_NEAR(report.heat("cpu"), cpu * 5000, 700) << "5 K of the shell per watt";
        EXPECT_THAT(report.main(), testing::AnyOf("cpu", "gpu")) << report.detail;
        EXPECT_GE(report.detail["cpu"]["keyFactor"]["game.render"].asInt(), 1) << report.detail;
        before = report.timeMs;
    }
}

TEST_F(HeatExamplesTest, aChargingPhoneHeatsThroughOthers) {
    const std::vector<Report> reports = play("charge");
    EXPECT_EQ(reports.front().main(), "display") << reports.front().detail;
    EXPECT_EQ(reports.back().main(), "cellular") << reports.back().detail;
    for (const Report& report : reports) {
        EXPECT_THAT(report.main(), testing::Not(testing::AnyOf("cpu", "gpu"))) << report.detail;
    }
}

TEST_F(HeatExamplesTest, aVideoCallOnAWeakCellHeatsThroughTheModem) {
    startExample("video-call");
    auto* const center = HeatProcessCenter::getInstance();
    runUntil(410);
    center->getMainHeatCompent();  // ends a stretch of samples
    runUntil(475);
    const HeatProcessCenter::MainHeat weak = center->getMainHeatCompent();
    EXPECT_EQ(weak.type, CELLULAR);
    EXPECT_NEAR(weak.heat, 10000, 1000) << "2 W at 5 K/W";
    runUntil(620);
    center->getMainHeatCompent();
    runUntil(680);
    EXPECT_NE(center->getMainHeatCompent().type, CELLULAR) << "a strong cell takes 0.6 W";
}
