#pragma once

#include <string>
#include <vector>

#include "sim/scenario/JsonPlace.h"
#include "sim/scenario/Scenario.h"

namespace sim {

/**
 * Refuses a scenario in which a node is a folder of another one, whenever they are there: nodes of
 * the members "nodes" and "timeline", `columns` of the trace, and what every phone has. `root` is
 * the document that `scenario` was made of.
 */
void checkFolders(const JsonPlace& root, const Scenario& scenario,
                  const std::vector<std::string>& columns);

}  // namespace sim
