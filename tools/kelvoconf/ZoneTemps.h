#pragma once

#include <string>
#include <vector>

#include "ZoneList.h"
#include "kelvoconf/lint/ModelRanges.h"

namespace kelvoconf {

/** The samples of a list of zones, as one; none when no zone has a sample. */
kelvo::lint::ZoneSamples samplesOf(const std::vector<ListedZone>& zones, const std::string& place);

/**
 * The rows of a trace as a scenario has it, whatever its zones are; `zones` are those of the phone,
 * for models that name them by their numbers. What is hardly meant in the rows is said on standard
 * error, once. Throws Failure for a wrong header; walking over wrong rows does, too.
 */
kelvo::lint::ZoneSamples samplesOfTrace(const std::string& file,
                                        const std::vector<ListedZone>& zones);

}  // namespace kelvoconf
