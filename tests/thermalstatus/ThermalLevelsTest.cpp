#include "thermalstatus/ThermalLevels.h"

#include <gtest/gtest.h>

using kelvo::HeatSourceReport;

TEST(ThermalLevelsTest, findsWhereAListFalls) {
    const std::pair<std::vector<int32_t>, std::optional<size_t>> cases[] = {
            {{30}, {}},
            {{30, 30, 31}, {}},
            {{30, 25}, 1},
            {{-1, 30, -1, 25}, {}},
            {{30, -1, 31, 30}, 3},
            {{-1, -2}, 1},
    };
    for (const auto& [list, falls] : cases) {
        EXPECT_EQ(kelvo::firstFallingEntry(list), falls) << testing::PrintToString(list);
    }
}

TEST(ThermalLevelsTest, reportsHeatSourcesByStepOrAfterTheHoldOff) {
    constexpr int64_t kSecond = 1'000'000'000;
    // last, temp, now, due, why
    const std::tuple<HeatSourceReport, int32_t, int64_t, bool, const char*> cases[] = {
            {{40000, 0}, 40800, 0, false, "800 is not a step"},
            {{40000, 0}, 40801, 0, true, "801 is"},
            {{40000, 0}, 39199, 0, true, "also downwards"},
            {{36000, 0}, 36000, 121 * kSecond - 1, false, "within the hold-off"},
            {{36000, 0}, 36000, 121 * kSecond, true, "after it"},
            {{35000, 0}, 35000, 500 * kSecond, false, "not up to 35 °C"},
            {{35001, 0}, 35001, 500 * kSecond, true, "above"},
            // 200 s leave -1863462912 in 32 bits: 201 s is not "recent".
            {{36000, static_cast<int32_t>(200 * kSecond)},
             36000,
             201 * kSecond,
             true,
             "the clock does not fit in the stored time"},
            {{INT32_MIN, 0}, INT32_MAX, 0, true, "no overflow"},
    };
    for (const auto& [last, temp, now, due, why] : cases) {
        EXPECT_EQ(kelvo::isHeatSourceDue(last, temp, now), due) << why;
    }
}
