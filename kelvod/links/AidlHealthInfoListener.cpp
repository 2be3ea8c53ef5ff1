#include "links/AidlHealthInfoListener.h"

#include <android/binder_manager.h>
#include <binder/IServiceManager.h>

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

/** Passes the service manager's notices on; they come on binder threads. */
class AidlHealthInfoListener::Registrations
      : public android::IServiceManager::LocalRegistrationCallback {
  public:
    explicit Registrations(AidlHealthInfoListener* listener) : mListener(listener) {}

    void onServiceRegistration(const android::String16&,
                               const android::sp<android::IBinder>&) override {
        mListener->onRegistration();
    }

  private:
    AidlHealthInfoListener* const mListener;  // never ends
};

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
    const int status = askAndConnect();
    if (status != 0) {
        Mutex::Autolock lock(mServiceMutex);
        mLastAsk = kelvo::monotonicNanos();
    }
    watchRegistrations();
    return status;
}

int AidlHealthInfoListener::askAndConnect() {
    return mCaller.ask(kNoService,
                       [self = ref<AidlHealthInfoListener>()] { return self->connect(); });
}

/** Without waiting: whatever is registered later is told. */
int AidlHealthInfoListener::connect() {
    const SpAIBinder binder(AServiceManager_checkService(instanceName().c_str()));
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
        if (mHealth == health) {
            mHealth = nullptr;
        }
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
        health->unregisterCallback(ref<AidlHealthInfoListener>());  // or it would be called twice
        return linked;
    }
    KLOGD("[%s], init aidl health service success.", "init");
    return 0;
}

/** Once. A registration that came before is told at once, and finds the listener connected. */
void AidlHealthInfoListener::watchRegistrations() {
    const android::sp<Registrations> registrations = new Registrations(this);
    {
        Mutex::Autolock lock(mServiceMutex);
        if (mRegistrations != nullptr) {
            return;
        }
        mRegistrations = registrations;
    }
    const android::sp<android::IServiceManager> services = android::defaultServiceManager();
    if (services == nullptr ||
        services->registerForNotifications(android::String16(instanceName().c_str()),
                                           registrations) != android::OK) {
        KLOGE("nobody tells when the aidl health service comes, it is looked for when needed");
    }
}

void AidlHealthInfoListener::onRegistration() {
    if (!isConnected()) {
        askAndConnect();
    }
}

void AidlHealthInfoListener::reconnect() {
    if (takeAsk()) {
        askAndConnect();
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
    if (init() == kNoService) {
        KLOGE("[%s], aidl health service is away, it is awaited.", "serviceDied");
    }
}
