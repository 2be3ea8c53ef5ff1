// The examples are correct, and their models tell the truth about their plants.

#include <gtest/gtest.h>

#include <filesystem>

#include "PlantNames.h"
#include "sim/scenario/JsonPlace.h"
#include "sim/scenario/ScenarioParser.h"
#include "sim/scenario/TraceCheck.h"

namespace {

std::string example(const std::string& name) {
    return std::string(KELVO_EXAMPLES) + "/" + name + "/scenario.json";
}

/** What a model of the scene "default" makes of the plant's zones, °C. */
double fitted(const Json::Value& model, const sim::Plant& plant) {
    const Json::Value& zones = model["thermal_zone"];
    double sum = model["coefficient"][zones.size()].asDouble();
    for (Json::ArrayIndex i = 0; i < zones.size(); ++i) {
        sum += model["coefficient"][i].asDouble() * *zoneTemp(plant, zones[i].asString());
    }
    return sum / 1000;
}

TEST(Examples, areAllCorrect) {
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(KELVO_EXAMPLES)) {
        if (entry.is_directory()) {
            const sim::Scenario scenario = sim::loadScenario(entry.path() / "scenario.json");
            EXPECT_GT(scenario.zones.size(), 0U) << entry.path();
            EXPECT_GT(scenario.expect.size(), 2U) << entry.path();
            EXPECT_EQ(sim::checkTrace(scenario) > 0, scenario.trace.has_value());
            ++count;
        }
    }
    EXPECT_GE(count, 3);
}

TEST(Examples, fitTheShellWithinOneDegree) {
    for (const char* name : {"game", "charge"}) {
        const sim::Scenario scenario = sim::loadScenario(example(name));
        const Json::Value config = sim::parseJson(*scenario.config.main, "main");
        const Json::Value& models = config["shell_temp_fitting_model"]["default"]["temp_model"];
        sim::Plant plant(*scenario.plant);
        double hottest = 0;
        for (int64_t t = 0; t <= scenario.durationMs / 1000; ++t) {
            plant.advanceTo(t);
            for (const char* shell : {"front", "back", "frame"}) {
                const double truth = nodeTemp(plant, shell);
                ASSERT_NEAR(fitted(models[shell], plant), truth, 1.0) << name << shell << t;
                hottest = std::max(hottest, truth);
            }
        }
        // Hot enough for levels and heat sources to show, not hotter than a phone gets.
        EXPECT_GT(hottest, 39) << name;
        EXPECT_LT(hottest, 50) << name;
    }
}

}  // namespace
