#include "links/HealthInfoNotifier.h"

#include <binder/IServiceManager.h>
#include <binder/Parcel.h>

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

/** A health service whose death cannot be linked to. */
class UnlinkableHealth : public android::BBinder {
  public:
    const android::String16& getInterfaceDescriptor() const override { return mDescriptor; }
    android::status_t linkToDeath(const android::sp<DeathRecipient>&, void*, uint32_t) override {
        return android::DEAD_OBJECT;
    }

    int asked = 0;
    int callbacks = 0;

  protected:
    android::status_t onTransact(uint32_t code, const android::Parcel&, android::Parcel* reply,
                                 uint32_t) override {
        constexpr uint32_t kRegister = 1;
        asked += code == kRegister ? 1 : 0;
        callbacks += code == kRegister ? 1 : -1;
        return reply->writeNoException();
    }

  private:
    const android::String16 mDescriptor{"android.hardware.health.IHealth"};
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

TEST_F(HealthInfoNotifierTest, asksAnAidlServiceThatRefusesOnceInFiveSeconds) {
    scenario.services.erase("health");
    start(HealthHal::Aidl);
    EXPECT_TRUE(log.has("[initHealthService], init aidl health service failed."));
    EXPECT_FALSE(charging());
    EXPECT_FALSE(log.has("[getOnChargeStats], no health service inited."));
    const android::sp<UnlinkableHealth> refuses = new UnlinkableHealth();
    android::defaultServiceManager()->addService(
            android::String16("android.hardware.health.IHealth/default"), refuses);
    EXPECT_EQ(refuses->asked, 1) << "at its registration";
    for (const double seconds : {4.9, 5.1, 9.9, 10.2}) {
        runUntil(seconds);
        charging();
        wireless();
    }
    EXPECT_EQ(refuses->asked, 3);
    EXPECT_EQ(refuses->callbacks, 0) << "what cannot be linked to is not left registered";
    EXPECT_EQ(log.count("[init], Failed to link to death, status -32"), 3u);
}

TEST_F(HealthInfoNotifierTest, saysSoWhenThereIsNeitherService) {
    scenario.services.erase("health");
    start(HealthHal::Hidl);
    EXPECT_TRUE(log.has("get hidl health service failed."));
    EXPECT_TRUE(log.has("[initHealthService], init hidl health service failed."));
    EXPECT_FALSE(charging());
    EXPECT_FALSE(wireless());
    EXPECT_TRUE(log.has("[getOnChargeStats], no health service inited."));
    EXPECT_TRUE(log.has("[getChargerWirelessStats], no health service inited."));
}
