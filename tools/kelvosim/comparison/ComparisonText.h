#pragma once

#include <iosfwd>
#include <string>

#include "comparison/Comparison.h"

/**
 * A comparison for people: a line when nothing differs, else what differs first, most and in the
 * mean, and the times of other levels, statuses and notifications. Times are seconds of phone time,
 * as in events and logs.
 */
void writeComparison(std::ostream& out, const Comparison& comparison, const std::string& scenario,
                     const std::string& other);
