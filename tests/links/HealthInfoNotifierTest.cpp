#include "links/HealthInfoNotifier.h"

#include "support/EngineTest.h"

using sim::HealthHal;

namespace {

struct HealthInfoNotifierTest : EngineTest, testing::WithParamInterface<HealthHal> {
    HealthInfoNotifierTest() { addZone("skin", 30000); }

    void start(HealthHal hal) {
        scenario.healthHal = hal;
        setScenes(scene("default", 0, "skin") + "," + scene("wirless_charge", 1, "skin"));
        startPhone();
    }
    void health(const sim::Health& chargers) { phone().perform(chargers); }
    void service(bool up) { setService("health", up); }

    static bool charging() { return HealthInfoNotifier::getInstance().getOnChargeStats(); }
    static bool wireless() { return HealthInfoNotifier::getInstance().getChargerWirelessStats(); }
};

constexpr char kChargingTime[] = "setChargingStartTime:";
constexpr char kDied[] = "health service died, will try to reconnect.";

}  // namespace

TEST_P(HealthInfoNotifierTest, turnsTheEdgesOfCallbacksIntoMessages) {
    start(GetParam());
    EXPECT_FALSE(charging());
    // chargers, whether it charges, wirelessly, and whether the one or the other changes
    const std::tuple<sim::Health, bool, bool, bool, bool> steps[] = {
            {{}, false, false, false, false},
            {{.ac = true}, true, false, true, false},
            {{.usb = true}, true, false, false, false},
            {{.ac = true, .wireless = true}, true, true, false, true},
            {{.wireless = true}, true, true, false, false},
            {{}, false, false, true, true}};
    for (const auto& [chargers, charges, isWireless, changes, wirelessChanges] : steps) {
        log.clear();
        health(chargers);
        EXPECT_EQ(charging(), charges);
        EXPECT_EQ(wireless(), isWireless);
        EXPECT_EQ(log.countOf(kChargingTime), charges ? 1u : 0u);
        EXPECT_EQ(log.countOf("switch charge state"), changes ? 1u : 0u);
        const std::string line = std::string("ChargeStats changed to ") + (charges ? "1\n" : "0\n");
        EXPECT_EQ(log.count(ANDROID_LOG_DEBUG, line), changes ? 1u : 0u);
        EXPECT_EQ(log.countOf("chargerWireless changed to "), wirelessChanges ? 1u : 0u);
    }
    EXPECT_TRUE(log.has("chargerWireless changed to default\n"));
}

TEST_P(HealthInfoNotifierTest, keepsItsStateWhenTheServiceDies) {
    start(GetParam());
    health({.usb = true, .wireless = true});
    log.clear();
    service(false);
    const std::string hal = GetParam() == HealthHal::Aidl ? "" : "hidl ";
    EXPECT_EQ(log.count("[serviceDied], " + hal + kDied), 1u);
    EXPECT_TRUE(charging());
    EXPECT_TRUE(wireless());
}

INSTANTIATE_TEST_SUITE_P(Hals, HealthInfoNotifierTest,
                         testing::Values(HealthHal::Aidl, HealthHal::Hidl), [](const auto& test) {
                             return test.param == HealthHal::Aidl ? "aidl" : "hidl";
                         });
