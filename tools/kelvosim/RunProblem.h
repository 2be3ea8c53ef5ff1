#pragma once

#include <optional>
#include <string>
#include <vector>

#include "report/HtmlReport.h"
#include "sim/scenario/Scenario.h"

/** Why a run shows nothing, or not what its configuration says. */
struct RunProblem {
    std::string what;   // "the daemon is disabled, so nothing happens"
    std::string place;  // in the scenario, or in a file that it names: "config.main:12"
};

/**
 * What keeps the daemon from its configuration at the start: its property, a phone without any, a
 * file that it rejects. `warnings` are the configuration's.
 */
std::optional<RunProblem> runProblem(const sim::Scenario& scenario,
                                     const std::vector<ReportWarning>& warnings);
