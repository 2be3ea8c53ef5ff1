#include "ambient/AmbientParams.h"

#include <gtest/gtest.h>

#include "support/ConfigFaults.h"

using kelvo::AmbientFault;
using kelvo::AmbientFitting;
using Kind = AmbientFault::Kind;

namespace {

/** The four names and both thresholds, with more names, coefficients and members. */
std::string section(
        const std::string& names = "", const std::string& coefficients = "",
        const std::string& members = ",'temp_rate_threshold':5,'power_diff_threshold':6.5") {
    return "{'paramter_name':['temp_coeff','tempSlope_coeff','power_coeff','const_coeff'" + names +
           "],'coefficient':[1,2.5,3,4" + coefficients + "]" + members + "}";
}

}  // namespace

TEST(AmbientParamsTest, takesEachParameterByItsName) {
    const AmbientFitting fitting = kelvo::readAmbientFitting(
            parsed(section(",'battery_current_coeff','temp_coeff','spare'", ",7,8,9")));
    ASSERT_TRUE(fitting.params);
    const kelvo::AmbientParams& params = *fitting.params;
    EXPECT_EQ(std::tuple(params.temp, params.tempSlope, params.power, params.constant),
              std::tuple(8, 2.5, 3, 4))
            << "of two temperatures the later";
    EXPECT_EQ(params.batteryCurrent, 7);
    EXPECT_EQ(
            std::tuple(params.tempRateThreshold, params.powerDiffThreshold, params.chargeThreshold),
            std::tuple(5, 6.5, 2500));
    EXPECT_EQ(fitting.pairs.size(), 7u);
    EXPECT_TRUE(fitting.faults.empty());
}

TEST(AmbientParamsTest, takesThresholdsFromTheListUnlessBothAreMembers) {
    const std::string names = ",'temp_rate_threshold','power_diff_threshold'";
    // members, rate, power, charge
    const std::tuple<const char*, double, double, double> cases[] = {
            {"", 8, 9, 2500},
            {",'temp_rate_threshold':5", 8, 9, 2500},
            {",'temp_rate_threshold':5,'power_diff_threshold':'6'", 8, 9, 2500},
            {",'temp_rate_threshold':5,'power_diff_threshold':6", 5, 6, 2500},
            {",'charge_current_threshold':100.5", 8, 9, 100.5},
    };
    for (const auto& [members, rate, power, charge] : cases) {
        const AmbientFitting fitting =
                kelvo::readAmbientFitting(parsed(section(names, ",8,9", members)));
        ASSERT_TRUE(fitting.params) << members;
        EXPECT_FALSE(fitting.params->batteryCurrent);
        EXPECT_EQ(fitting.params->tempRateThreshold, rate) << members;
        EXPECT_EQ(fitting.params->powerDiffThreshold, power) << members;
        EXPECT_EQ(fitting.params->chargeThreshold, charge) << members;
    }
}

TEST(AmbientParamsTest, saysWhyASceneCannotBeUsed) {
    // text, kind, element, name, pairs
    const std::tuple<std::string, Kind, Json::ArrayIndex, const char*, size_t> cases[] = {
            {"null", Kind::NO_ARRAYS, 0, "", 0},
            {"[]", Kind::NO_ARRAYS, 0, "", 0},
            {"{'paramter_name':[]}", Kind::NO_ARRAYS, 0, "", 0},
            {"{'paramter_name':'x','coefficient':[]}", Kind::NO_ARRAYS, 0, "", 0},
            {section(",'x'"), Kind::UNEQUAL, 0, "", 0},
            {section(",'x'", "", ",'charge_current_threshold':9"), Kind::UNEQUAL, 0, "", 0},
            {section(",5", ",'x'"), Kind::BAD_NAME, 4, "", 4},
            {section(",'x',5", ",'1',1"), Kind::BAD_COEFFICIENT, 4, "", 4},
            {"{'paramter_name':[],'coefficient':[]}", Kind::MISSING_NAME, 0, "temp_coeff", 0},
            {"{'paramter_name':['temp_coeff','tempSlope_coeff','power_coeff'],'coefficient':"
             "[1,2,3]}",
             Kind::MISSING_NAME, 0, "const_coeff", 3},
            {section("", "", ""), Kind::MISSING_THRESHOLD, 0, "temp_rate_threshold", 4},
            {section("", "", ",'power_diff_threshold':6"), Kind::MISSING_THRESHOLD, 0,
             "temp_rate_threshold", 4},
            {section(",'temp_rate_threshold'", ",1", ""), Kind::MISSING_THRESHOLD, 0,
             "power_diff_threshold", 5},
    };
    for (const auto& [text, kind, element, name, pairs] : cases) {
        const AmbientFitting fitting = kelvo::readAmbientFitting(parsed(text));
        EXPECT_FALSE(fitting.params) << text;
        ASSERT_EQ(fitting.faults.size(), 1u) << text;
        EXPECT_EQ(fitting.faults.front().kind, kind) << text;
        EXPECT_EQ(fitting.faults.front().element, element) << text;
        EXPECT_EQ(fitting.faults.front().name, name) << text;
        EXPECT_EQ(fitting.pairs.size(), pairs) << text;
    }
}

TEST(AmbientParamsTest, goesOnWithTheDefaultOfAChargeThresholdThatIsNoNumber) {
    const AmbientFitting fitting = kelvo::readAmbientFitting(parsed(section(
            "", "",
            ",'temp_rate_threshold':5,'power_diff_threshold':6,'charge_current_threshold':'9'")));
    ASSERT_TRUE(fitting.params);
    EXPECT_EQ(fitting.params->chargeThreshold, 2500);
    ASSERT_EQ(fitting.faults.size(), 1u);
    const AmbientFault& fault = fitting.faults.front();
    EXPECT_EQ(std::tuple(fault.kind, fault.element, fault.name),
              std::tuple(Kind::WRONG_TYPE, 0u, "charge_current_threshold"));
}
