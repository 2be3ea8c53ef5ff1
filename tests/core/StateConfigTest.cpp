#include <gtest/gtest.h>

#include "core/BigDataConfig.h"
#include "core/ThrottlingThresholds.h"
#include "support/ConfigFaults.h"

TEST(BigDataConfigTest, takesWholeNumbersInTheirRanges) {
    const struct {
        const char* section;
        bool enabled;
        int32_t period;
        std::optional<int32_t> share;
        const char* faults;
    } cases[] = {
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
    for (const auto& test : cases) {
        const kelvo::BigDataConfig config = kelvo::readBigDataConfig(parsed(test.section));
        EXPECT_EQ(config.enabled, test.enabled) << test.section;
        EXPECT_EQ(config.samplePeriod, test.period) << test.section;
        EXPECT_EQ(config.thermalOffThousandth, test.share) << test.section;
        EXPECT_EQ(textOf(config.faults), test.faults) << test.section;
    }
}

TEST(ThrottlingThresholdsTest, takesTheFirstSevenWholeNumbersOfAnArray) {
    const struct {
        const char* section;
        std::vector<int32_t> given;
    } cases[] = {
            {"null", {}},
            {"{'start_end_values':[1,2]}", {}},
            {"[]", {}},
            {"['x',1,null,2.5,-3]", {1, -3}},
            {"[1,2,3,4,5,6,7]", {1, 2, 3, 4, 5, 6, 7}},
            {"['x',1,2,3,4,5,6,7,8]", {1, 2, 3, 4, 5, 6, 7}},
    };
    for (const auto& test : cases) {
        const auto thresholds = kelvo::readThrottlingThresholds(parsed(test.section));
        std::vector<int32_t> expected = test.given;
        expected.resize(kelvo::kThrottlingThresholds, INT32_MAX);
        EXPECT_EQ(thresholds.count, test.given.size()) << test.section;
        EXPECT_EQ(std::vector<int32_t>(thresholds.values.begin(), thresholds.values.end()),
                  expected)
                << test.section;
    }
}
