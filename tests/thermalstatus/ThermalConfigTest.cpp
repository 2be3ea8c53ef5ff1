#include <gtest/gtest.h>

#include "support/ConfigFaults.h"
#include "thermalstatus/BroadcastConfig.h"
#include "thermalstatus/ThermalLevels.h"
#include "thermalstatus/ThermalModelReader.h"

namespace {

std::string list(size_t count) {
    std::string text;
    for (size_t i = 0; i < count; ++i) {
        text += (text.empty() ? "[" : ",") + std::to_string(i);
    }
    return text + "]";
}

}  // namespace

TEST(BroadcastConfigTest, takesAFlagAndABandOfTwoEnds) {
    // section, enabled, hasBand, low, high, faults
    const std::tuple<const char*, bool, bool, int32_t, int32_t, const char*> cases[] = {
            {"null", true, false, 30, 55, ""},
            {"[1,2]", true, false, 30, 55, ""},
            {"5", true, false, 30, 55, ":type"},
            {"{}", true, false, 30, 55, ""},
            {"{'disable':1,'start_end_values':[1,2]}", false, true, 1, 2, ""},
            {"{'disable':2}", true, false, 30, 55, ""},
            {"{'disable':1.5}", true, false, 30, 55, "disable:type"},
            {"{'disable':null,'start_end_values':null}", true, false, 30, 55, ""},
            {"{'start_end_values':{}}", true, false, 30, 55, "start_end_values:type"},
            {"{'start_end_values':[1]}", true, false, 30, 55, "start_end_values:length"},
            {"{'start_end_values':[1,2,3]}", true, false, 30, 55, "start_end_values:length"},
            {"{'start_end_values':[60,'x']}", true, true, 60, 55, "start_end_values[1]:type"},
            {"{'start_end_values':[null,9]}", true, true, 30, 9, "start_end_values[0]:type"},
            {"{'start_end_values':[40,40]}", true, true, 40, 40, ""},
            {"{'start_end_values':[41,40]}", true, true, 41, 40, "start_end_values:reversed"},
    };
    for (const auto& [section, enabled, hasBand, low, high, faults] : cases) {
        const kelvo::BroadcastConfig config = kelvo::readBroadcastConfig(parsed(section));
        EXPECT_EQ(config.enabled, enabled) << section;
        EXPECT_EQ(config.hasBand, hasBand) << section;
        EXPECT_EQ(config.band.low, low) << section;
        EXPECT_EQ(config.band.high, high) << section;
        EXPECT_EQ(textOf(config.faults), faults) << section;
    }
}

TEST(ThermalModelReaderTest, saysWhatIsWrongInWhichList) {
    const std::string all = list(kelvo::kThermalLevels);
    // up, down, status, report, faults
    const std::tuple<std::string, std::string, std::string, std::string, const char*> cases[] = {
            {all, all, all, "[1]", ""},
            {"null", "{}", "7", "[]",
             "temp_threshold:missing thermal_status:type thermal_status_report:empty "
             "temp_threshold_down:type"},
            {"['x',1,null,0]", all, "[1,2]", "[-1,3,-1,2]",
             "temp_threshold[0]:type temp_threshold[2]:type temp_threshold[3]:falling "
             "temp_threshold:length"},
            {"['x']", all, "[1]", "[5,4]",
             "temp_threshold[0]:type temp_threshold:empty thermal_status_report[1]:falling"},
            {all, list(20), list(20), "[1]", "thermal_status:length temp_threshold_down:length"},
            {list(20), list(22), list(20), "[1]",
             "temp_threshold:length temp_threshold_down:length"},
    };
    for (const auto& [up, down, status, report, faults] : cases) {
        const std::string section = "{'temp_threshold':" + up + ",'temp_threshold_down':" + down +
                                    ",'thermal_status':" + status +
                                    ",'thermal_status_report':" + report + "}";
        EXPECT_EQ(textOf(kelvo::readThermalModel(parsed(section)).faults), faults) << section;
    }
}
