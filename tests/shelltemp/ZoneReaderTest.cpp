#include "shelltemp/ZoneReader.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include "sim/scenario/PhonePaths.h"
#include "sim/tree/DeviceTree.h"
#include "support/LogCapture.h"

using kelvo::ThermalZone;
using kelvo::ZoneState;

TEST(ZoneReaderTest, readsMediaTekThermistorsFromTheirOwnNode) {
    EXPECT_EQ(kelvo::zoneTempPath({7, "mtktscpu"}, false), "/proc/mtktz/mtktscpu");
    EXPECT_EQ(kelvo::zoneTempPath({7, "mtktscpu"}, true), "/sys/class/thermal/thermal_zone7/temp");
    EXPECT_EQ(kelvo::zoneTempPath({7, "xmtktscpu"}, false),
              "/sys/class/thermal/thermal_zone7/temp");
    EXPECT_EQ(kelvo::zoneTempPath({7, ""}, false), "/sys/class/thermal/thermal_zone7/temp");
}

TEST(ZoneReaderTest, judgesWhatTheNodeHolds) {
    sim::DeviceTree tree(getenv("KELVO_ROOT"));
    LogCapture log;
    const std::string path = sim::zonePath(3, "temp");
    const std::string longText = "45000" + std::string(500, 'x');
    constexpr int32_t kBefore = 12345;
    const struct {
        const char* text;
        ZoneState state;
        int32_t temp;
    } cases[] = {
            {"115000\n", ZoneState::GOOD, 115000},
            {"115001\n", ZoneState::OUT_OF_RANGE, 115001},
            {"-39999\n", ZoneState::GOOD, -39999},
            {"-40000\n", ZoneState::OUT_OF_RANGE, -40000},
            {"  41000 m\n", ZoneState::GOOD, 41000},
            {"garbage\n", ZoneState::GOOD, 0},
            {"-274000\n", ZoneState::OUT_OF_RANGE, -274000},
            {longText.c_str(), ZoneState::GOOD, 45000},
            {"", ZoneState::READ_FAILED, kBefore},
    };
    for (const auto& test : cases) {
        tree.setNode(path, test.text);
        int32_t temp = kBefore;
        EXPECT_EQ(kelvo::readZone({3, "cpu"}, temp), test.state) << test.text;
        EXPECT_EQ(temp, test.temp) << test.text;
    }
    EXPECT_EQ(log.count(ANDROID_LOG_ERROR, "TZ(3) temp 115001 is abnormal"), 1u);
    EXPECT_EQ(log.count(ANDROID_LOG_ERROR,
                        "Read file(/sys/class/thermal/thermal_zone3/temp) failed!"),
              1u);
}
