#pragma once

#include <cstdint>
#include <string>

#include "sim/scenario/Scenario.h"

/** `kelvosim check`: reads everything a scenario names and prints a line about it. */
void checkScenario(const std::string& file);

/**
 * Reads the whole trace of the scenario of this file, and says on standard error what in the
 * scenario can be run but is hardly meant. Returns the trace's rows.
 */
int64_t checkTraceAndWarn(const sim::Scenario& scenario, const std::string& file);
