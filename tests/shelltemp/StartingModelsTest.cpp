// Which models the engine starts with, and what it says of itself at start.

#include "shelltemp/ShellTempFitting.h"
#include "support/EngineTest.h"

namespace {

struct StartingModelsTest : EngineTest {
    StartingModelsTest() { addZone("soc_thermal_ipa", 45000); }
};

}  // namespace

TEST_F(StartingModelsTest, runsOnWithoutAnyConfigurationFile) {
    startPhone();
    runUntil(60);
    EXPECT_EQ(takeWrites(), Lines{});
    EXPECT_TRUE(log.has("Get file contents failed!"));
    EXPECT_TRUE(log.has("no shell temp fitting model"));
}

TEST_F(StartingModelsTest, runsOnWhenSectionsHaveTheWrongType) {
    setConfig(
            "{'shell_temp_fitting_model':[1],'specified_tempzone_info':'x',"
            "'tsensor_tempzone_info':3,'max_abn_tz_detect_times':'many'}");
    startPhone();
    runUntil(5);
    EXPECT_EQ(takeWrites(), Lines{});
    EXPECT_TRUE(log.has("can't find any valid fitting model, exit."));
}

TEST_F(StartingModelsTest, publishesTheIpaZone) {
    startPhone();
    EXPECT_EQ(phone().tree().property("sys.ipa_thermal_number"), "0");
    EXPECT_TRUE(log.has("initIPA Tz index = 0,"));
}

TEST_F(StartingModelsTest, leavesIpaAloneWhenItsZoneIsSet) {
    scenario.properties["ro.vendor.zenta.ipa.thermalzone"] = "-1";
    startPhone();
    EXPECT_EQ(phone().tree().property("sys.ipa_thermal_number"), std::nullopt);
}
