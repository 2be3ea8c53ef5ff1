#pragma once

#include <string>

#include "kelvoconf/lint/Fleet.h"

namespace kelvo::lint {

/** The platforms and projects of a fleet, for a summary: "platform SM8450 and any other; …". */
std::string toText(const Fleet& fleet);

/** The lines of toText(Finding), then one that tells whom of the fleet it hits. */
std::string toText(const FleetFinding& finding, const Fleet& fleet);

/**
 * The line of toJsonLine(Finding) with one more member: "hits", an array of
 * {"platform","projects"}, where null stands for any that the document does not name.
 */
std::string toJsonLine(const FleetFinding& finding);

}  // namespace kelvo::lint
