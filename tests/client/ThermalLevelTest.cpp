#include "client/ThermalLevel.h"

#include <gtest/gtest.h>

TEST(ThermalLevel, isTheOneThatCanHoldWithTheStatus) {
    const client::ThermalThresholds levels{{-1, 36, 38, 40}, {-1, 35, 37, 39}, {0, 0, 1, 1}};
    // status, celsius, before, level
    const std::tuple<int32_t, double, std::optional<int32_t>, std::optional<int32_t>> rows[] = {
            {0, 20, {}, 0},   {0, 35.5, {}, 0}, {0, 35.5, 1, 1}, {0, 36, 0, 1},   {0, 35, 1, 1},
            {0, 34.9, 1, 0},  {1, 37.5, 1, 2},  {1, 39.5, 1, 2}, {1, 39.5, 2, 2}, {1, 39.5, 3, 3},
            {1, 39.5, {}, 2}, {1, 50, {}, 3},   {5, 37, 1, {}},  {1, 20, {}, {}},
    };
    for (const auto& [status, celsius, before, level] : rows) {
        EXPECT_EQ(client::levelOf(levels, status, celsius, before), level)
                << status << " at " << celsius;
    }
    EXPECT_EQ(client::levelOf({}, 0, 20, 1), std::nullopt) << "no thresholds";
}
