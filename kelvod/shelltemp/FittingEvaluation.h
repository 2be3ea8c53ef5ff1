#pragma once

#include <cstdint>
#include <vector>

namespace kelvo {

/**
 * Value (m°C) of a linear model: the weighted sum of the zone temperatures, added left to right in
 * double precision, plus the last coefficient as a constant when there are more coefficients than
 * temperatures; middle ones beyond the temperatures are ignored. Truncated toward zero.
 */
int32_t evaluateLinearModel(const std::vector<int32_t>& temps,
                            const std::vector<double>& coefficients);

}  // namespace kelvo
