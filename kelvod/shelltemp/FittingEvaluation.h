#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace kelvo {

/** What the value of a model was summed from (m°C). */
struct LinearTerms {
    std::vector<double> contributions;  // one for each temperature that has a weight
    std::optional<double> constant;
};

/**
 * Value (m°C) of a linear model: the weighted sum of the zone temperatures, added left to right in
 * double precision, plus the last coefficient as a constant when there are more coefficients than
 * temperatures; middle ones beyond the temperatures are ignored. Truncated toward zero. `terms`,
 * when not null, receives what was added.
 */
int32_t evaluateLinearModel(const std::vector<int32_t>& temps,
                            const std::vector<double>& coefficients, LinearTerms* terms = nullptr);

}  // namespace kelvo
