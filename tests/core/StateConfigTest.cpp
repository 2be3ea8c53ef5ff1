#include <gtest/gtest.h>

#include "core/BigDataConfig.h"
#include "core/ThrottlingThresholds.h"
#include "support/ConfigFaults.h"

TEST(BigDataConfigTest, takesWholeNumbersInTheirRanges) {
    // section, enabled, period, share, faults
    const std::tuple<const char*, bool, int32_t, std::optional<int32_t>, const char*> cases[] = {
            {"null", false, 60, {}, ""},
            {"{'enable':1}", true, 60, {}, ""},
            {"{'enable':2,'sample_period':20}", false, 20, {}, ""},
            {"{'enable':true}", false, 60, {}, "enable:type"},
            {"{'enable':null,'sample_period':null}", false, 60, {}, ""},
            {"{'enable':1,'sample_period':10}", true, 10, {}, ""},
            {"{'enable':1,'sample_period':9}", true, 60, {}, "sample_period:range"},
            {"{'enable':1,'sample_period':20.5}", true, 60, {}, "sample_period:type"},
            {"{'enable':1,'thermal_off_thousandth':1}", true, 60, 1, ""},
            {"{'enable':1,'thermal_off_thousandth':0}", true, 60, {}, ""},
            {"{'thermal_off_thousandth':-1}", false, 60, {}, "thermal_off_thousandth:range"},
            {"{'thermal_off_thousandth':[]}", false, 60, {}, "thermal_off_thousandth:type"},
            {"{'sample_period':4294967295}", false, 60, {}, "sample_period:type"},
    };
    for (const auto& [section, enabled, period, share, faults] : cases) {
        const kelvo::BigDataConfig config = kelvo::readBigDataConfig(parsed(section));
        EXPECT_EQ(config.enabled, enabled) << section;
        EXPECT_EQ(config.samplePeriod, period) << section;
        EXPECT_EQ(config.thermalOffThousandth, share) << section;
        EXPECT_EQ(textOf(config.faults), faults) << section;
    }
}

TEST(ThrottlingThresholdsTest, takesTheFirstSevenWholeNumbersOfAnArray) {
    const std::pair<const char*, std::vector<int32_t>> cases[] = {
            {"null", {}},
            {"{'start_end_values':[1,2]}", {}},
            {"[]", {}},
            {"['x',1,null,2.5,-3]", {1, -3}},
            {"[1,2,3,4,5,6,7]", {1, 2, 3, 4, 5, 6, 7}},
            {"['x',1,2,3,4,5,6,7,8]", {1, 2, 3, 4, 5, 6, 7}},
    };
    for (const auto& [section, given] : cases) {
        const auto thresholds = kelvo::readThrottlingThresholds(parsed(section));
        std::vector<int32_t> expected = given;
        expected.resize(kelvo::kThrottlingThresholds, INT32_MAX);
        EXPECT_EQ(thresholds.count, given.size()) << section;
        EXPECT_EQ(std::vector<int32_t>(thresholds.values.begin(), thresholds.values.end()),
                  expected)
                << section;
    }
}
