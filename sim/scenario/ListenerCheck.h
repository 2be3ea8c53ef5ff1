#pragma once

#include <utility>
#include <vector>

#include "sim/scenario/JsonPlace.h"
#include "sim/scenario/Scenario.h"

namespace sim {

/**
 * Follows the listeners through a sorted timeline: registering a living registered one again, or
 * an id that nothing registers, is a mistake. Throws ScenarioError.
 */
void checkListeners(const std::vector<std::pair<Action, JsonPlace>>& timeline);

}  // namespace sim
