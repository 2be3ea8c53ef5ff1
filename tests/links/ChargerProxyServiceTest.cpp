#include "links/ChargerProxyService.h"

#include <limits>

#include "service/ServiceCodes.h"
#include "support/EngineTest.h"

namespace {

constexpr char kAbsent[] = "unable to get Charger service";
constexpr char kLinked[] = "Link to death notification successful";

struct ChargerProxyServiceTest : EngineTest {
    ChargerProxyServiceTest() { addZone("skin", 30000); }
    void start() {
        setScenes(scene("default", 0, "skin"));
        startPhone();
    }
    static int32_t current() { return ChargerProxyService::getInstance().getBatteryCurrentNow(); }
    void screen(int32_t status) { call(kelvo::SET_SCREEN_STATUS, status); }
};

}  // namespace

TEST_F(ChargerProxyServiceTest, answersMinusOneAndSaysSoEachTimeWithoutTheService) {
    scenario.services.erase("charger");
    start();
    EXPECT_EQ(current(), -1);
    EXPECT_EQ(current(), -1);
    screen(1);
    EXPECT_EQ(log.errors(kAbsent), 3u + 1) << "and for the package charge";
    EXPECT_EQ(log.count(ANDROID_LOG_DEBUG,
                        "Couldn't get battery remain because of ChargerProxyService error."),
              3u);
    EXPECT_EQ(log.count(ANDROID_LOG_DEBUG,
                        "Couldn't notifyScreenStatus because of ChargerProxyService error."),
              1u);
}

TEST_F(ChargerProxyServiceTest, connectsOnceAndAgainAfterADeath) {
    start();
    for (const int32_t value :
         {0, -1500, std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max()}) {
        phone().perform(sim::BatteryCurrent{value});
        EXPECT_EQ(current(), value);
    }
    EXPECT_EQ(log.count(kLinked), 1u);
    setService("charger", false);
    EXPECT_EQ(log.errors("ChargerProxyService just died"), 1u);
    EXPECT_EQ(current(), -1);
    setService("charger", true);
    EXPECT_EQ(current(), std::numeric_limits<int32_t>::max()) << "the value survives";
    EXPECT_EQ(log.count(kLinked), 2u);
}
