#include "shelltemp/FittingEvaluation.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

TEST(FittingEvaluationTest, addsWeightedZonesAndConstant) {
    // temps, coefficients, value, why
    const std::tuple<std::vector<int32_t>, std::vector<double>, int32_t, const char*> cases[] = {
            {{40000, 30000}, {0.6, 0.3, 1500.0}, 34500, "two zones and a constant"},
            {{40000}, {0.5, 7777.0, 100.0}, 20100, "the middle coefficient is ignored"},
            {{40000, 30000}, {0.5}, 20000, "fewer coefficients than zones"},
            {{}, {1.0, 1234.9}, 1234, "no zone: the last coefficient alone"},
            {{1}, {-0.5}, 0, "truncated toward zero from below"},
            {{40000}, {1e9}, std::numeric_limits<int32_t>::max(), "saturates"},
            {{40000}, {-1e9}, std::numeric_limits<int32_t>::min(), "saturates below"},
            {{40000}, {std::nan("")}, 0, "NaN"},
    };
    for (const auto& [temps, coefficients, value, why] : cases) {
        EXPECT_EQ(kelvo::evaluateLinearModel(temps, coefficients), value) << why;
    }
}
