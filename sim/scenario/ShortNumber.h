#pragma once

#include <cstdint>
#include <string>

namespace sim {

/** A number as short as it can be said, of twelve digits at most: "43.5", "315". */
std::string shortNumber(double number);

/** Thousandths likewise: milliseconds as s, m°C as °C. */
std::string shortThousandths(int64_t thousandths);

}  // namespace sim
