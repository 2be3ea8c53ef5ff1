#include "links/HealthInfoNotifier.h"

#include <binder/IServiceManager.h>
#include <binder/Parcel.h>

#include <algorithm>

#include "support/EngineTest.h"

using sim::HealthHal;

namespace {

class HealthInfoNotifierTest : public EngineTest, public testing::WithParamInterface<HealthHal> {
  protected:
    HealthInfoNotifierTest() { addZone("skin", 30000); }

    void start(HealthHal hal) {
        scenario.healthHal = hal;
        setScenes(scene("default", 0, "skin") + "," + scene("wirless_charge", 1, "skin"));
        startPhone();
    }
    void health(const sim::Health& chargers) { phone().perform(chargers); }
    void service(bool up) { phone().perform(sim::ServiceState{"health", up}); }

    static bool charging() { return HealthInfoNotifier::getInstance().getOnChargeStats(); }
    static bool wireless() { return HealthInfoNotifier::getInstance().getChargerWirelessStats(); }
    /** Lines that begin with `text` since the log was cleared. */
    int64_t linesWith(const std::string& text) const {
        const auto lines = log.lines();
        return std::ranges::count_if(lines,
                                     [&](const auto& line) { return line.text.starts_with(text); });
    }
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
    const struct {
        sim::Health health;
        bool charging, wireless, changes, wirelessChanges;
    } kSteps[] = {{{}, false, false, false, false},
                  {{.ac = true}, true, false, true, false},
                  {{.usb = true}, true, false, false, false},
                  {{.ac = true, .wireless = true}, true, true, false, true},
                  {{.wireless = true}, true, true, false, false},
                  {{}, false, false, true, true}};
    for (const auto& step : kSteps) {
        log.clear();
        health(step.health);
        EXPECT_EQ(charging(), step.charging);
        EXPECT_EQ(wireless(), step.wireless);
        EXPECT_EQ(linesWith(kChargingTime), step.charging ? 1 : 0);
        EXPECT_EQ(linesWith("switch charge state"), step.changes ? 1 : 0);
        EXPECT_EQ(log.count(ANDROID_LOG_DEBUG, step.charging ? "ChargeStats changed to 1\n"
                                                             : "ChargeStats changed to 0\n"),
                  step.changes ? 1u : 0u);
        EXPECT_EQ(linesWith("chargerWireless changed to "), step.wirelessChanges ? 1 : 0);
    }
    EXPECT_TRUE(log.has("chargerWireless changed to default\n"));
    EXPECT_TRUE(log.has("switch to scene default success")) << "op code 0, the rollback scene";
}

TEST_P(HealthInfoNotifierTest, keepsItsStateWhenTheServiceDies) {
    start(GetParam());
    health({.usb = true, .wireless = true});
    EXPECT_TRUE(log.has("switch to scene wirless_charge success"));
    log.clear();
    service(false);
    EXPECT_EQ(std::ranges::count_if(log.lines(),
                                    [](const auto& line) { return line.text.ends_with(kDied); }),
              1);
    EXPECT_TRUE(charging());
    EXPECT_TRUE(wireless());
    EXPECT_EQ(linesWith("ChargeStats"), 0);
}

TEST_P(HealthInfoNotifierTest, survivesAServiceThatDiesEverySecond) {
    start(GetParam());
    for (int second = 1; second <= 120; ++second) {
        runUntil(second);
        service(second % 2 == 0);
        health({.ac = second % 3 == 0});
        charging();
    }
    EXPECT_EQ(linesWith("[init], init "), 61) << "at the start and at each registration";
}

TEST_P(HealthInfoNotifierTest, hearsAServiceThatWasAwayWithoutBeingAsked) {
    start(GetParam());
    runUntil(10);
    log.clear();
    service(false);
    runUntil(100);
    service(true);
    health({.usb = true});
    EXPECT_EQ(linesWith("ChargeStats changed to 1"), 1);
    EXPECT_TRUE(charging());
    EXPECT_EQ(linesWith(GetParam() == HealthHal::Aidl
                                ? "[serviceDied], aidl health service is away, it is awaited."
                                : "get hidl health service failed."),
              1);
}

TEST_P(HealthInfoNotifierTest, hearsAServiceThatComesAfterTheStart) {
    scenario.services.erase("health");
    start(GetParam());
    EXPECT_FALSE(charging());
    log.clear();
    service(true);
    health({.wireless = true});
    EXPECT_EQ(linesWith("chargerWireless changed to wirless_charge"), 1);
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
