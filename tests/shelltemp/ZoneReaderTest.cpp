#include "shelltemp/ZoneReader.h"

#include <gtest/gtest.h>

#include "sim/scenario/PhonePaths.h"
#include "support/LogCapture.h"
#include "support/Phone.h"

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
    sim::DeviceTree tree = phone();
    LogCapture log;
    const std::string path = sim::zonePath(3, "temp");
    constexpr int32_t kBefore = 12345;
    const std::tuple<std::string, ZoneState, int32_t> cases[] = {
            {"115000\n", ZoneState::GOOD, 115000},
            {"115001\n", ZoneState::OUT_OF_RANGE, 115001},
            {"-39999\n", ZoneState::GOOD, -39999},
            {"-40000\n", ZoneState::OUT_OF_RANGE, -40000},
            {"  41000 m\n", ZoneState::GOOD, 41000},
            {"garbage\n", ZoneState::GOOD, 0},
            {"-274000\n", ZoneState::OUT_OF_RANGE, -274000},
            {"45000" + std::string(500, 'x'), ZoneState::GOOD, 45000},
            {"", ZoneState::READ_FAILED, kBefore},
    };
    for (const auto& [text, state, read] : cases) {
        tree.setNode(path, text);
        int32_t temp = kBefore;
        EXPECT_EQ(kelvo::readZone({3, "cpu"}, temp), state) << text;
        EXPECT_EQ(temp, read) << text;
    }
    EXPECT_EQ(log.errors("TZ(3) temp 115001 is abnormal"), 1u);
    EXPECT_EQ(log.errors("Read file(/sys/class/thermal/thermal_zone3/temp) failed!"), 1u);
}
