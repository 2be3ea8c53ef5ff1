#include "support/EngineTest.h"

namespace {

/** default uses zone 0; backup_a zone 1; backup_b zone 2 first and zone 1 second. */
struct BackupFallbackTest : EngineTest {
    BackupFallbackTest() {
        for (const char* type : {"skin", "cpu", "board"}) {
            addZone(type, 40000);
        }
        setConfig("{'max_abn_tz_detect_times':2,'shell_temp_fitting_model':{" +
                  scene("default", 0, "skin") + "," + scene("backup_a", 1, "cpu") +
                  ",'backup_b':{'temp_model':{" + model("m", 2, "board") + "," +
                  model("n", 3, "cpu") + "}}}}");
    }
};

}  // namespace

TEST_F(BackupFallbackTest, movesToTheFirstHealthySetOnceTheZoneFailsPastTheLimit) {
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
