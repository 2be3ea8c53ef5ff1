#pragma once

#include <vector>

#include "sim/scenario/JsonPlace.h"
#include "sim/scenario/Scenario.h"

namespace sim {

/** Reads and checks the member "plant" of a scenario with these zones. Throws ScenarioError. */
PlantParams parsePlant(const JsonPlace& plant, const std::vector<ZoneSpec>& zones);

}  // namespace sim
