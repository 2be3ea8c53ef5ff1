// A health service in another process, as a daemon uses it.

#include <aidl/android/hardware/health/BnHealth.h>
#include <aidl/android/hardware/health/BnHealthInfoCallback.h>
#include <android/binder_libbinder.h>
#include <android/binder_manager.h>
#include <android/binder_process.h>
#include <binder/Stability.h>
#include <gtest/gtest.h>

#include <future>

#include "support/BinderWorld.h"
#include "support/Phone.h"

namespace aidl::android::hardware::health {
namespace {

using ndk::ScopedAStatus;

constexpr char kName[] = "android.hardware.health.IHealth/default";
constexpr std::chrono::milliseconds kLimit(kBinderWorldLimitMs);

ScopedAStatus unsupported() {
    return ScopedAStatus::fromExceptionCode(EX_UNSUPPORTED_OPERATION);
}

class Health : public BnHealth {
    using Callback = std::shared_ptr<IHealthInfoCallback>;
    ScopedAStatus registerCallback(const Callback& callback) override {
        mCallback = callback;
        return ScopedAStatus::ok();
    }
    ScopedAStatus unregisterCallback(const Callback& callback) override {
        const bool known = mCallback != nullptr && callback->asBinder() == mCallback->asBinder();
        return known ? ScopedAStatus::ok() : ScopedAStatus::fromServiceSpecificError(7);
    }
    ScopedAStatus update() override {
        HealthInfo info;
        info.chargerWirelessOnline = true;
        info.chargerDockOnline = AIBinder_isHandlingTransaction();
        info.batteryTechnology = "Li-ion";
        info.diskStats.resize(2);
        info.storageInfos.resize(1);
        info.storageInfos[0].version = "5.1";
        info.batteryFullChargeDesignCapacityUah = AIBinder_getCallingPid();
        return mCallback->healthInfoChanged(info);
    }
    ScopedAStatus getChargeCounterUah(int32_t*) override { return unsupported(); }
    ScopedAStatus getCurrentNowMicroamps(int32_t*) override { return unsupported(); }
    ScopedAStatus getCurrentAverageMicroamps(int32_t*) override { return unsupported(); }
    ScopedAStatus getCapacity(int32_t*) override { return unsupported(); }
    ScopedAStatus getEnergyCounterNwh(int64_t*) override { return unsupported(); }
    ScopedAStatus getChargeStatus(int32_t*) override { return unsupported(); }
    ScopedAStatus getStorageInfo(std::vector<StorageInfo>*) override { return unsupported(); }
    ScopedAStatus getDiskStats(std::vector<DiskStats>*) override { return unsupported(); }
    ScopedAStatus getHealthInfo(HealthInfo*) override { return unsupported(); }

    Callback mCallback;
};

int serve(RoleLink& link) {
    ABinderProcess_startThreadPool();
    const auto health = ndk::SharedRefBase::make<Health>();
    link.send(AServiceManager_addService(health->asBinder().get(), kName) == EX_NONE ? "ready"
                                                                                     : "refused");
    link.receive();
    return 0;
}
const Role kServe("ndkHealth", serve);

struct Listener : BnHealthInfoCallback {
    ScopedAStatus healthInfoChanged(const HealthInfo& info) override {
        told.set_value(info);
        return ScopedAStatus::ok();
    }
    std::promise<HealthInfo> told;
};

struct Mourning {
    int deaths = 0;
    std::promise<int> ended;  // the deaths, when the cookie was given back
};

TEST(NdkHealthTest, isRefusedWhereTheManifestDoesNotDeclareIt) {
    BinderWorld world;
    EXPECT_EQ("refused", world.start("ndkHealth").receive());
}

TEST(NdkHealthTest, callsBackAndIsMournedOnce) {
    BinderWorld world;
    phone().setNode("/vendor/etc/vintf/declared", kName);
    RoleProcess& server = world.start("ndkHealth");
    ASSERT_EQ("ready", server.receive());
    ABinderProcess_startThreadPool();
    const ndk::SpAIBinder binder(AServiceManager_getService(kName));
    const std::shared_ptr<IHealth> health = IHealth::fromBinder(binder);
    ASSERT_NE(nullptr, health);
    EXPECT_TRUE(health->isRemote());
    EXPECT_TRUE(::android::internal::Stability::requiresVintfDeclaration(
            AIBinder_toPlatformBinder(binder.get())));
    EXPECT_EQ(binder, ndk::SpAIBinder(AServiceManager_checkService(kName)));
    EXPECT_EQ(nullptr, IHealthInfoCallback::fromBinder(binder)) << "it is another interface";

    const auto listener = ndk::SharedRefBase::make<Listener>();
    EXPECT_TRUE(::android::internal::Stability::requiresVintfDeclaration(
            AIBinder_toPlatformBinder(listener->asBinder().get())));
    ASSERT_TRUE(health->registerCallback(listener).isOk());
    ASSERT_TRUE(health->update().isOk());
    auto told = listener->told.get_future();
    ASSERT_EQ(std::future_status::ready, told.wait_for(kLimit));
    const HealthInfo info = told.get();
    EXPECT_TRUE(info.chargerWirelessOnline);
    EXPECT_TRUE(info.chargerDockOnline);
    EXPECT_FALSE(AIBinder_isHandlingTransaction());
    EXPECT_EQ("5.1", info.storageInfos.at(0).version);
    EXPECT_EQ(getpid(), info.batteryFullChargeDesignCapacityUah);
    EXPECT_TRUE(health->unregisterCallback(listener).isOk());
    int32_t percent;
    EXPECT_EQ(EX_UNSUPPORTED_OPERATION, health->getCapacity(&percent).getExceptionCode());

    Mourning stays;
    Mourning leaves;
    const ndk::ScopedAIBinder_DeathRecipient recipient(AIBinder_DeathRecipient_new(
            [](void* cookie) { ++static_cast<Mourning*>(cookie)->deaths; }));
    AIBinder_DeathRecipient_setOnUnlinked(recipient.get(), [](void* cookie) {
        auto* mourning = static_cast<Mourning*>(cookie);
        mourning->ended.set_value(mourning->deaths);
    });
    ASSERT_EQ(STATUS_OK, AIBinder_linkToDeath(binder.get(), recipient.get(), &stays));
    ASSERT_EQ(STATUS_OK, AIBinder_linkToDeath(binder.get(), recipient.get(), &leaves));
    EXPECT_EQ(STATUS_OK, AIBinder_unlinkToDeath(binder.get(), recipient.get(), &leaves));
    EXPECT_EQ(0, leaves.ended.get_future().get());
    server.kill();
    auto ended = stays.ended.get_future();
    ASSERT_EQ(std::future_status::ready, ended.wait_for(kLimit));
    EXPECT_EQ(1, ended.get());
    EXPECT_EQ(STATUS_NAME_NOT_FOUND, AIBinder_unlinkToDeath(binder.get(), recipient.get(), &stays));
    EXPECT_FALSE(AIBinder_isAlive(binder.get()));
    EXPECT_EQ(STATUS_DEAD_OBJECT, health->update().getStatus());
    Mourning late;
    EXPECT_EQ(STATUS_DEAD_OBJECT, AIBinder_linkToDeath(binder.get(), recipient.get(), &late));
    EXPECT_EQ(0, late.ended.get_future().get());
}

}  // namespace
}  // namespace aidl::android::hardware::health
