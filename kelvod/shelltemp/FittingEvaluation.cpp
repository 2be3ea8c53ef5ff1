#include "shelltemp/FittingEvaluation.h"

#include <algorithm>

#include "base/Numeric.h"

namespace kelvo {

int32_t evaluateLinearModel(const std::vector<int32_t>& temps,
                            const std::vector<double>& coefficients, LinearTerms* terms) {
    const size_t used = std::min(temps.size(), coefficients.size());
    double sum = 0.0;
    for (size_t i = 0; i < used; ++i) {
        const double contribution = coefficients[i] * temps[i];
        sum += contribution;
        if (terms != nullptr) {
            terms->contributions.push_back(contribution);
        }
    }
    if (used < coefficients.size()) {
        sum += coefficients.back();
        if (terms != nullptr) {
            terms->constant = coefficients.back();
        }
    }
    return saturatingInt32(sum);
}

}  // namespace kelvo
