#pragma once

#include <optional>
#include <string>

#include "sim/scenario/Scenario.h"

/** Throws sim::ScenarioError when `problem` has something to say about an action. */
void refuseProblems(const sim::Scenario& scenario, const std::string& file,
                    std::optional<std::string> (*problem)(const sim::Deed&));
