#pragma once

#include <vector>

#include "report/HtmlReport.h"
#include "sim/scenario/Scenario.h"

/**
 * What is wrong with the configuration files of a scenario, each judged as the phone's daemon would
 * use it. The daemon's code that this runs logs.
 */
std::vector<ReportWarning> configWarnings(const sim::Scenario& scenario);
