// The example: what the daemon says of a phone is what heats it in truth.

#include "HeatSourceTest.h"
#include "sim/plant/Plant.h"
#include "sim/scenario/ScenarioParser.h"

class VideoCallTest : public HeatSourceTest {};

TEST_F(VideoCallTest, namesTheModemOnAWeakCell) {
    scenario = sim::loadScenario(std::string(KELVO_EXAMPLES) + "/video-call/scenario.json");
    startPhone();
    runUntil(410);
    HeatProcessCenter::getInstance()->getMainHeatCompent();  // ends a stretch of samples
    runUntil(475);
    const HeatProcessCenter::MainHeat weak = HeatProcessCenter::getInstance()->getMainHeatCompent();
    EXPECT_EQ(weak.type, CELLULAR);
    EXPECT_NEAR(weak.heat, 10000, 1000) << "2 W at 5 K/W";
    runUntil(620);
    HeatProcessCenter::getInstance()->getMainHeatCompent();
    runUntil(680);
    EXPECT_NE(HeatProcessCenter::getInstance()->getMainHeatCompent().type, CELLULAR)
            << "a strong cell takes 0.6 W";
}
