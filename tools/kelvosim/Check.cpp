#include "Check.h"

#include <iostream>
#include <vector>

#include "Failure.h"
#include "sim/scenario/ScenarioParser.h"
#include "sim/scenario/TraceCheck.h"
#include "sim/tree/PhoneTree.h"

int64_t checkTraceAndWarn(const sim::Scenario& scenario, const std::string& file) {
    std::vector<sim::ScenarioWarning> warnings = sim::warningsOf(scenario, file);
    const int64_t rows = sim::checkTrace(scenario, &warnings);
    for (const sim::ScenarioWarning& warning : warnings) {
        command_line::complain("kelvosim", "warning: " + warning.what + ": " + warning.place);
    }
    return rows;
}

void checkScenario(const std::string& file) {
    const sim::Scenario scenario = sim::loadScenario(file);
    const int64_t rows = checkTraceAndWarn(scenario, file);
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
    std::cout << scenario.timeline.size() << " actions";
    if (!scenario.expect.empty()) {
        std::cout << ", " << scenario.expect.size() << " expectations";
    }
    std::cout << '\n';
}
