#include "links/AidlHealthInfoListener.h"

#include <android/binder_manager.h>

#include "base/Log.h"
#include "base/Time.h"

using aidl::android::hardware::health::HealthInfo;
using aidl::android::hardware::health::IHealth;
using android::Mutex;
using ndk::ScopedAStatus;
using ndk::SpAIBinder;

namespace {

constexpr int kAlreadyConnected = -38;
constexpr int kNoService = -19;
constexpr int64_t kAskInterval = 5 * kelvo::kNanosPerSecond;

}  // namespace

AidlHealthInfoListener::AidlHealthInfoListener(HealthObserver observer)
      : mState(std::move(observer)), mDeathRecipient(AIBinder_DeathRecipient_new([](void* cookie) {
            static_cast<AidlHealthInfoListener*>(cookie)->serviceDied();
        })) {}

std::string AidlHealthInfoListener::instanceName() {
    return std::string(IHealth::descriptor) + "/default";
}

bool AidlHealthInfoListener::isConnected() const {
    Mutex::Autolock lock(mServiceMutex);
    return mHealth != nullptr;
}

int AidlHealthInfoListener::init() {
    if (isConnected()) {
        return kAlreadyConnected;
    }
    const int status = connect(SpAIBinder(AServiceManager_getService(instanceName().c_str())));
    if (status != 0) {
        Mutex::Autolock lock(mServiceMutex);
        mLastAsk = kelvo::monotonicNanos();
    }
    return status;
}

int AidlHealthInfoListener::connect(const SpAIBinder& binder) {
    const std::shared_ptr<IHealth> health = IHealth::fromBinder(binder);
    if (health == nullptr) {
        return kNoService;
    }
    {
        // Stands before the service can die or another thread connects as well.
        Mutex::Autolock lock(mServiceMutex);
        if (mHealth != nullptr) {
            return kAlreadyConnected;
        }
        mHealth = health;
    }
    const int status = subscribe(health);
    if (status != 0) {
        Mutex::Autolock lock(mServiceMutex);
        mHealth = nullptr;
    }
    return status;
}

int AidlHealthInfoListener::subscribe(const std::shared_ptr<IHealth>& health) {
    if (!health->registerCallback(ref<AidlHealthInfoListener>()).isOk()) {
        KLOGE("[%s], Transaction error in registerCallback to HealthHAL", "init");
        return kNoService;
    }
    const binder_status_t linked =
            AIBinder_linkToDeath(health->asBinder().get(), mDeathRecipient.get(), this);
    if (linked != STATUS_OK) {
        KLOGE("[%s], Failed to link to death, status %d", "init", linked);
        return linked;
    }
    KLOGD("[%s], init aidl health service success.", "init");
    return 0;
}

void AidlHealthInfoListener::reconnect() {
    if (takeAsk()) {
        connect(SpAIBinder(AServiceManager_checkService(instanceName().c_str())));
    }
}

bool AidlHealthInfoListener::takeAsk() {
    Mutex::Autolock lock(mServiceMutex);
    const int64_t now = kelvo::monotonicNanos();
    if (mHealth != nullptr || now - mLastAsk < kAskInterval) {
        return false;
    }
    mLastAsk = now;
    return true;
}

ScopedAStatus AidlHealthInfoListener::healthInfoChanged(const HealthInfo& info) {
    mState.update(info.chargerAcOnline, info.chargerUsbOnline, info.chargerWirelessOnline);
    return ScopedAStatus::ok();
}

void AidlHealthInfoListener::serviceDied() {
    std::shared_ptr<IHealth> dead;  // released after the lock
    {
        Mutex::Autolock lock(mServiceMutex);
        dead.swap(mHealth);
    }
    if (dead == nullptr) {
        KLOGE("aidl health service not init or unknown err.");
        return;
    }
    KLOGD("[%s], health service died, will try to reconnect.", "serviceDied");
    init();
}
