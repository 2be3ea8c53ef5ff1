#pragma once

#include <iosfwd>
#include <string>

#include "comparison/Comparison.h"

/**
 * A comparison for people: a line when nothing differs, else what differs and how far, first, most
 * and in the mean, and the times of other states and notifications; how far the models of both were
 * off what was measured. Times are seconds of phone time,
 * as in events and logs.
 */
void writeComparison(std::ostream& out, const RunOutcome& own, const ComparedRun& other,
                     const std::string& scenario);
