#pragma once

#include <vector>

#include "sim/scenario/JsonPlace.h"
#include "sim/scenario/Scenario.h"

namespace sim {

/** Reads and checks the member "timeline"; the result is sorted by time. Throws ScenarioError. */
std::vector<Action> parseTimeline(const JsonPlace& timeline, const std::vector<ZoneSpec>& zones);

}  // namespace sim
