#include "Check.h"

#include <iostream>

#include "sim/scenario/ScenarioParser.h"
#include "sim/scenario/Trace.h"
#include "sim/tree/PhoneTree.h"

void checkScenario(const std::string& file) {
    const sim::Scenario scenario = sim::loadScenario(file);
    const int64_t rows = sim::checkTrace(scenario);
    const std::string platform = sim::platformOf(scenario.nodes);
    std::cout << (scenario.name.empty() ? file : scenario.name) << ": "
              << static_cast<double>(scenario.durationMs) / 1000 << " s, "
              << (platform.empty() ? "no supported chip" : platform) << ", "
              << scenario.zones.size() << " zones, ";
    if (scenario.plant) {
        std::cout << "plant of " << scenario.plant->nodes.size() << " nodes, ";
    }
    if (scenario.trace) {
        std::cout << "trace of " << rows << " rows, ";
    }
    std::cout << scenario.timeline.size() << " actions\n";
}
