#pragma once

#include <functional>
#include <optional>
#include <string>

#include "sim/scenario/Scenario.h"
#include "sim/tree/DeviceTree.h"

/** The texts of a configuration that stands in for a scenario's own. */
struct OtherConfig {
    std::string main;
    std::string subFile;             // its name; empty: the scenario's own sub-file stays
    std::optional<std::string> sub;  // its text
};

/**
 * Reads plain or encrypted files: the named one, and the sub-file beside it that is named for the
 * platform as on a phone: "warmer_SM8450.json" for "warmer.json". Throws ScenarioError, with the
 * line, when the daemon could not read one.
 */
OtherConfig readOtherConfig(const std::string& file, const std::string& platform);

/** Lets it stand in. */
void replaceConfig(sim::Scenario& scenario, const OtherConfig& other);

/**
 * `--against`: runs this program with the same arguments for the outcome of each of `others`
 * configurations, then with the scenario's own for all that was asked for and the comparisons.
 * Returns the exit status.
 */
int runAllWays(char** argv, size_t others, const std::function<void(sim::DeviceTree&)>& prepare);

/** The options by which the runs know what they are. */
inline constexpr char kOutcomeTo[] = "--outcome-to";
inline constexpr char kOutcomeOf[] = "--outcome-of";  // which configuration, from 0
inline constexpr char kCompareWith[] = "--compare-with";
