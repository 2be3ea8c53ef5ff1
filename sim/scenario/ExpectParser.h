#pragma once

#include <vector>

#include "sim/scenario/Expectation.h"
#include "sim/scenario/JsonPlace.h"
#include "sim/scenario/Scenario.h"

namespace sim {

/** What a scenario expects, of which everything else has been read. Throws ScenarioError. */
std::vector<Expectation> parseExpectations(const JsonPlace& expect, const Scenario& scenario);

}  // namespace sim
