#include "support/EngineTest.h"

using BackupFallbackTest = EngineTest;

TEST_F(BackupFallbackTest, movesToTheFirstHealthySetOnceTheZoneFailsPastTheLimit) {
    addZone("skin", 40000);
    addZone("cpu", 40000);
    setConfig("{'max_abn_tz_detect_times':2,'shell_temp_fitting_model':{" +
              scene("default", 0, "skin") + "," + scene("backup_a", 1, "cpu") + "}}");
    startPhone();
    runUntil(0);
    takeWrites();
    setTemp(0, std::nullopt);
    runUntil(15);
    EXPECT_EQ(takeWrites(), Lines{}) << "three failures list the zone";
    runUntil(20);
    EXPECT_EQ(takeWrites(), Lines{"1 40000"}) << "backup_a";
    EXPECT_EQ(log.count(ANDROID_LOG_INFO, "update current fitting model(scene:backup_a)."), 1u);
}
