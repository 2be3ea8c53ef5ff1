#pragma once

#include <string>
#include <vector>

#include "sim/scenario/Scenario.h"

namespace sim {

/** What a scenario says and hardly means; it can be run all the same. */
struct ScenarioWarning {
    std::string what;
    std::string place;  // file and line, or member
};

/** Warnings of a scenario of this file, but those of its trace, which checkTrace() gives. */
std::vector<ScenarioWarning> warningsOf(const Scenario& scenario, const std::string& file);

}  // namespace sim
