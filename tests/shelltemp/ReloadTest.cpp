#include "config/KelvoConfig.h"
#include "shelltemp/ShellTempFitting.h"
#include "support/EngineTest.h"

namespace {

struct ReloadTest : EngineTest {
    ReloadTest() {
        addZone("skin", 40000);
        addZone("cpu", 41000);
    }

    /** Stores other scenes as the phone's configuration and reloads as the message loop does. */
    void reload(const std::string& scenes) {
        setScenes(scenes);
        sim::PhoneTree(phone().tree(), scenario, [](bool) {}).build();
        kelvo::KelvoConfig::getInstance().reload();
        engine().reload();
    }
    static ShellTempFitting& engine() { return ShellTempFitting::getInstance(); }
};

}  // namespace

TEST_F(ReloadTest, takesUpNewModelsAtOnce) {
    setScenes(scene("default", 0, "skin"));
    startPhone();
    runUntil(2);
    reload(scene("default", 0, "cpu"));
    runUntil(2);
    EXPECT_EQ(engine().getFittingTemps().at(0), 41000) << "woken: no wait for the next interval";
}

TEST_F(ReloadTest, staysOnTheBackupSceneItHadFallenBackTo) {
    setScenes(scene("backup_a", 1, "skin"));
    startPhone();
    EXPECT_TRUE(
            log.has("ShellTempFitting, current fitting model is empty, use backup front model"));
    runUntil(0);
    reload(scene("backup_0", 7, "skin") + "," + scene("backup_a", 2, "cpu"));
    runUntil(0);
    EXPECT_EQ(engine().getFittingTemps().count(2), 1u);
}
