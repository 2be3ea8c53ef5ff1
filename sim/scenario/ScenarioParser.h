#pragma once

#include <string>
#include <string_view>

#include "sim/scenario/Scenario.h"

namespace sim {

/**
 * Reads and checks a scenario file and the configuration files it names. The trace is checked by
 * checkTrace() of TraceCheck.h, which reads it row by row. Throws ScenarioError.
 */
Scenario loadScenario(const std::string& file);

/** The same for a text: names in it are relative to `folder`, messages call it `file`. */
Scenario parseScenario(std::string_view text, const std::string& file, const std::string& folder);

}  // namespace sim
