#include <binder_linux/LocalServiceManager.h>
#include <gtest/gtest.h>
#include <healthhalutils/HealthHalUtils.h>
#include <hidl/HidlTransportSupport.h>

#include <future>
#include <thread>

#include "TestCharger.h"
#include "support/BinderWorld.h"

namespace android::hardware {
namespace {

using hidl::base::V1_0::IBase;

const String16 kChargerName("hidl/vendor.zenta.hardware.charger/1.0/ICharger/default");

TEST(HidlServiceTest, isFoundUnderItsNameInTheOwnProcess) {
    const sp<LocalServiceManager> manager = installLocalServiceManager();
    EXPECT_EQ(nullptr, ICharger::getService()) << "does not wait for what is not declared";
    const sp<ICharger> charger = new TestCharger;
    ASSERT_EQ(OK, charger->registerAsService());
    EXPECT_EQ(toBinder(charger), manager->checkService(kChargerName));
    EXPECT_EQ(charger, ICharger::getService("default"));
    EXPECT_EQ(nullptr, ICharger::getService("other"));
    EXPECT_EQ(UNKNOWN_ERROR, charger->registerAsService("not allowed"));
    const String16 healthName("hidl/android.hardware.health/2.0/IHealth/default");
    manager->addService(healthName, toBinder(charger));
    EXPECT_EQ(nullptr, health::V2_0::get_health_service()) << "a charger under another's name";
}

TEST(HidlServiceTest, isWaitedForWhenDeclared) {
    installLocalServiceManager()->declareService(kChargerName);
    EXPECT_EQ(nullptr, ICharger::tryGetService());
    const sp<ICharger> charger = new TestCharger;
    const std::jthread server([&] {
        EXPECT_EQ(OK, charger->registerAsService("other"));
        EXPECT_EQ(OK, charger->registerAsService());
    });
    EXPECT_EQ(charger, ICharger::getService());
}

int serveCharger(RoleLink& link) {
    configureRpcThreadpool(1, false);
    const sp<ICharger> charger = new TestCharger;
    link.send(charger->registerAsService() == OK ? "ready" : "not added");
    link.receive(-1);
    return 0;
}
const Role kServeCharger("serveCharger", serveCharger);

struct Mourner : hidl_death_recipient {
    void serviceDied(uint64_t cookie, const wp<IBase>& who) override {
        mDied.set_value({cookie, who.promote()});  // throws the second time
    }
    std::promise<std::pair<uint64_t, sp<IBase>>> mDied;
};

TEST(HidlServiceTest, tellsOfItsDeathInAnotherProcess) {
    BinderWorld world;
    RoleProcess& server = world.start("serveCharger");
    ASSERT_EQ("ready", server.receive());
    const sp<ICharger> charger = ICharger::getService();
    ASSERT_NE(nullptr, charger);
    EXPECT_EQ(-1200, charger->getBatteryCurrentNow());
    EXPECT_TRUE(interfacesEqual(charger, ICharger::getService()));
    const sp<Mourner> mourner = new Mourner;
    const sp<Mourner> unlinked = new Mourner;
    EXPECT_TRUE(charger->linkToDeath(unlinked, 1));
    EXPECT_TRUE(charger->linkToDeath(mourner, 17775));
    EXPECT_TRUE(charger->unlinkToDeath(unlinked));
    EXPECT_FALSE(charger->unlinkToDeath(unlinked));
    server.kill();
    auto died = mourner->mDied.get_future();
    ASSERT_EQ(std::future_status::ready,
              died.wait_for(std::chrono::milliseconds(kBinderWorldLimitMs)));
    EXPECT_EQ((std::pair<uint64_t, sp<IBase>>(17775, charger)), died.get());
    EXPECT_TRUE(charger->getBatteryCurrentNow().isDeadObject());
    EXPECT_FALSE(charger->linkToDeath(mourner, 2));
    auto told = unlinked->mDied.get_future();
    EXPECT_EQ(std::future_status::timeout, told.wait_for(std::chrono::seconds(0)));
}

}  // namespace
}  // namespace android::hardware
