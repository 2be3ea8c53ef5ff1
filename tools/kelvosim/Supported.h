#pragma once

#include <string>

#include "sim/Scenario.h"

/** Throws sim::ScenarioError when the scenario has an action that `canPerform` denies. */
void refuseUnsupported(const sim::Scenario& scenario, const std::string& file,
                       bool (*canPerform)(const sim::Deed&), const std::string& verb);
