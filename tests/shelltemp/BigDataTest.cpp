// What the engine hands to the big-data collector, and when.

#include "core/DataCollector.h"
#include "shelltemp/ShellTempFitting.h"
#include "support/EngineTest.h"

namespace {

constexpr double kHour = 3600;
constexpr double kMidnight = 16 * kHour;  // the scenario starts at 08:00

struct BigDataTest : EngineTest {
    BigDataTest() {
        addZone("skin", 40000);
        addZone("cpu", 55000);
        setScenes(scene("default", 0, "skin"));
    }

    static Json::Value data() { return kelvo::DataCollector::getInstance().getData(); }
};

}  // namespace

TEST_F(BigDataTest, handsOverTheRecordsAtEachFullHour) {
    startPhone();
    EXPECT_EQ(ShellTempFitting::getInstance().updateScene("com.game", false, 0), 0);
    EXPECT_EQ(ShellTempFitting::getInstance().updateScene("com.game", false, 0), -1);
    runUntil(600);
    setTemp(0, 40300);
    runUntil(kHour - 1);
    EXPECT_FALSE(data().isMember("shelltemp"));
    runUntil(kHour);
    const Json::Value record = data()["shelltemp"]["20260301"];
    EXPECT_EQ(record["scene"], "default");
    EXPECT_EQ(record["package"], "com.game");
    EXPECT_EQ(record["charging"], false);
    EXPECT_EQ(record["starttime"], "20260301080000");
    EXPECT_EQ(record["timestamp"], "20260301090000");
    EXPECT_EQ(record["duration"], 3600);
    EXPECT_EQ(record["fitting"]["m"], 40300);
    EXPECT_EQ(record["temp"]["skin"]["max"]["time"], "20260301081005");
    EXPECT_EQ(record["fitting-delta"]["m"]["delta"], 300);
}

TEST_F(BigDataTest, startsNewRecordsAtTheFirstSceneOfADay) {
    startPhone();
    runUntil(kMidnight + 10);
    EXPECT_FALSE(data()["shelltemp"].isMember("20260302"));
    EXPECT_EQ(data()["shelltemp"]["20260301"]["package"], "Init");
    auto& engine = ShellTempFitting::getInstance();
    engine.updateScene("SCREEN:ON", false, 0);
    EXPECT_EQ(data()["shelltemp"]["20260301"]["duration"], 16 * 3600 + 10);
    runUntil(kMidnight + 10 + kHour);
    EXPECT_EQ(data()["shelltemp"]["20260302"]["starttime"], "20260302000010");
    EXPECT_EQ(data()["shelltemp"]["20260302"]["duration"], 3600)
            << "the hours count from the new day's start";
}
