#pragma once

#include <optional>
#include <string>

#include "sim/Scenario.h"

/** Throws sim::ScenarioError when the scenario has an action that `canPerform` denies. */
void refuseUnsupported(const sim::Scenario& scenario, const std::string& file,
                       bool (*canPerform)(const sim::Deed&), const std::string& verb);

/** Throws sim::ScenarioError when `problem` has something to say about an action. */
void refuseProblems(const sim::Scenario& scenario, const std::string& file,
                    std::optional<std::string> (*problem)(const sim::Deed&));
