#pragma once

#include <json/value.h>

#include <string>

#include "comparison/Comparison.h"

/**
 * A comparison for machines. Times are s, temperatures °C; what a run does not have is null. Lists
 * are whole.
 */
Json::Value comparisonJson(const RunOutcome& own, const ComparedRun& other,
                           const std::string& scenario);
