// Scenarios: whatever the text is, it is refused with a place, or it can be played.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "Target.h"
#include "sim/plant/Plant.h"
#include "sim/scenario/Scenario.h"
#include "sim/scenario/ScenarioParser.h"

void fuzzScenario(Bytes data) {
    constexpr int64_t kPlayedSeconds = 3;
    const std::string_view text = textOf(data);
    try {
        const sim::Scenario scenario = sim::parseScenario(text, "fuzz.json", "/nonexistent");
        if (scenario.plant) {
            sim::Plant plant(*scenario.plant);
            plant.advanceTo(kPlayedSeconds);
            for (size_t i = 0; i < scenario.plant->zones.size(); ++i) {
                plant.zoneTemp(i);
            }
        }
    } catch (const sim::ScenarioError&) {
        // refused
    }
}
