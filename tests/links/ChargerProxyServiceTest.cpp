#include "links/ChargerProxyService.h"

#include <limits>

#include "core/KelvoState.h"
#include "service/ServiceCodes.h"
#include "support/EngineTest.h"

namespace {

constexpr char kAbsent[] = "unable to get Charger service";
constexpr char kLinked[] = "Link to death notification successful";

class ChargerProxyServiceTest : public EngineTest {
  protected:
    ChargerProxyServiceTest() { addZone("skin", 30000); }
    void start() {
        setScenes(scene("default", 0, "skin"));
        startPhone();
    }
    static int32_t current() { return ChargerProxyService::getInstance().getBatteryCurrentNow(); }
    void service(bool up) { phone().perform(sim::ServiceState{"charger", up}); }
    void screen(int32_t status) {
        phone().perform(
                sim::Transact{.code = kelvo::SET_SCREEN_STATUS, .args = {status}, .reply = {}});
    }
    using Events = std::vector<std::string>;
};

}  // namespace

TEST_F(ChargerProxyServiceTest, answersMinusOneAndSaysSoEachTimeWithoutTheService) {
    scenario.services.erase("charger");
    start();
    EXPECT_EQ(current(), -1);
    EXPECT_EQ(current(), -1);
    screen(1);
    EXPECT_EQ(log.count(ANDROID_LOG_ERROR, kAbsent), 3u + 1) << "and for the package charge";
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
    service(false);
    EXPECT_EQ(log.count(ANDROID_LOG_ERROR, "ChargerProxyService just died"), 1u);
    EXPECT_EQ(current(), -1);
    service(true);
    EXPECT_EQ(current(), std::numeric_limits<int32_t>::max()) << "the value survives";
    EXPECT_EQ(log.count(kLinked), 2u);
}

TEST_F(ChargerProxyServiceTest, passesTheScreenStatusOn) {
    start();
    screen(1);
    screen(7);
    service(false);
    screen(0);
    Events told = takeEvents();
    std::erase_if(told, [](const auto& event) { return !event.starts_with("{'event':'charger"); });
    EXPECT_EQ(told, (Events{"{'event':'charger_screen_status','status':1}",
                            "{'event':'charger_screen_status','status':7}"}));
}

TEST_F(ChargerProxyServiceTest, givesTheCurrentThatPackagesAreChargedWith) {
    start();
    auto& state = KelvoState::getInstance();
    const auto foreground = [&](double seconds, const std::string& package, int32_t milliamperes) {
        runUntil(seconds);
        phone().perform(sim::BatteryCurrent{milliamperes});
        state.updateState(package);
    };
    foreground(0, "a", 5000);
    foreground(3600, "b", 120);  // of what a used
    foreground(3630, "c", 120);  // one of b, cut from 1.0
    service(false);
    foreground(7000, "d", 120);  // nothing is known of c
    log.clear();
    state.getPkgBatteryBigDataRecord("day", true);
    EXPECT_TRUE(log.has("getBigDataRecord a:120 "));
    EXPECT_TRUE(log.has("getBigDataRecord b:1 "));
    EXPECT_FALSE(log.has("getBigDataRecord c:0 "));
}
