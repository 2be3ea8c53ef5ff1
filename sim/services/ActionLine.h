#pragma once

#include <string>

#include "sim/scenario/Scenario.h"

namespace sim {

/** An action for a service as a line of JSON, in the form that a scenario's timeline has. */
std::string toActionLine(const Deed& deed);

/** The action in such a line; throws ScenarioError. */
Deed parseActionLine(const std::string& line);

}  // namespace sim
