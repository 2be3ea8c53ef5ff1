#pragma once

#include <functional>
#include <string>

#include "sim/tree/DeviceTree.h"

/**
 * The text of the configuration that stands in for a scenario's own, from a plain or an encrypted
 * file. Throws ScenarioError, with the line, when the daemon could not read it.
 */
std::string readOtherConfig(const std::string& file);

/**
 * `--against`: runs this program twice with the same arguments, first with the other configuration
 * for its outcome, then with the scenario's own for all that was asked for and the comparison.
 * Returns the exit status.
 */
int runBothWays(char** argv, const std::function<void(sim::DeviceTree&)>& prepare);

/** The options by which the two runs know what they are. */
inline constexpr char kOutcomeTo[] = "--outcome-to";
inline constexpr char kCompareWith[] = "--compare-with";
