#pragma once

#include <string>

#include "sim/scenario/Expectation.h"
#include "sim/scenario/JsonPlace.h"

namespace sim {

/** How the numbers of a figure stand in a scenario. */
enum class Scale {
    WHOLE,    // as they are
    CELSIUS,  // °C; ranges have m°C
};

/** A range and what it reads like: " 36 to 37 °C". */
struct TextRange {
    ValueRange range;
    std::string text;
};

/** [least, most], or a whole number. Throws ScenarioError, as the next. */
TextRange parseRange(const JsonPlace& place, Scale scale);

/** What is above or below a number, without it. */
TextRange parseAbove(const JsonPlace& place, Scale scale);
TextRange parseBelow(const JsonPlace& place, Scale scale);

}  // namespace sim
