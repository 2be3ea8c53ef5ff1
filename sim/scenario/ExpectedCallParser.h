#pragma once

#include "sim/scenario/Expectation.h"
#include "sim/scenario/JsonPlace.h"
#include "sim/scenario/Scenario.h"

namespace sim {

/**
 * The calls that a "notification" means: an event's name, or an object with more. Listeners are
 * those of the scenario's timeline. Throws ScenarioError.
 */
ExpectedCall parseExpectedCall(const JsonPlace& place, const Scenario& scenario);

}  // namespace sim
