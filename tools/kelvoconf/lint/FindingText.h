#pragma once

#include <string>

#include "kelvoconf/lint/Finding.h"

namespace kelvo::lint {

/** Three lines for a person, each with its newline: place and problem, effect, mending. */
std::string toText(const Finding& finding);

/**
 * One line of JSON for a machine: {"severity","rule","file","path","line","what","effect","mend"};
 * "line" is null when there is none.
 */
std::string toJsonLine(const Finding& finding);

}  // namespace kelvo::lint
