#pragma once

#include <set>
#include <string>
#include <utility>
#include <vector>

#include "sim/scenario/JsonPlace.h"
#include "sim/scenario/Scenario.h"

namespace sim {

/** Adds the ids of listeners that an action makes binders. */
void addListenerIds(const Deed& deed, std::set<std::string>& ids);
/** Fails at `place` unless the id is one of these. */
void checkListenerId(const JsonPlace& place, const std::string& id,
                     const std::set<std::string>& known);

/**
 * Follows the listeners through a sorted timeline: registering a living registered one again, or
 * an id that nothing registers, is a mistake. Throws ScenarioError.
 */
void checkListeners(const std::vector<std::pair<Action, JsonPlace>>& timeline);

}  // namespace sim
