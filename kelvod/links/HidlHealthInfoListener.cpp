#include "links/HidlHealthInfoListener.h"

#include <android/hidl/manager/1.0/IServiceNotification.h>
#include <healthhalutils/HealthHalUtils.h>
#include <hidl/HidlTransportSupport.h>

#include "base/Log.h"

using android::Mutex;
using android::sp;
using android::wp;
using android::hardware::hidl_string;
using android::hardware::interfacesEqual;
using android::hardware::Return;
using android::hardware::health::V2_0::get_health_service;
using android::hardware::health::V2_0::HealthInfo;
using android::hardware::health::V2_0::Result;

namespace {

constexpr int kAlreadyConnected = -38;
constexpr int kNoService = -19;

}  // namespace

/**
 * Passes callbacks on to the listener without keeping it alive: a service that holds the listener
 * itself would have to be told to let it go before it could end, and it ends to tell that.
 */
class HidlHealthInfoListener::Callback : public IHealthInfoCallback {
  public:
    explicit Callback(HidlHealthInfoListener* listener) : mListener(listener) {}

    Return<void> healthInfoChanged(const HealthInfo& info) override {
        const sp<HidlHealthInfoListener> listener = mListener.promote();
        return listener != nullptr ? listener->healthInfoChanged(info) : Return<void>();
    }

  private:
    const wp<HidlHealthInfoListener> mListener;
};

/** Passes notices of registrations on; they come on binder threads. */
class HidlHealthInfoListener::Registrations
      : public android::hidl::manager::V1_0::IServiceNotification {
  public:
    explicit Registrations(HidlHealthInfoListener* listener) : mListener(listener) {}

    Return<void> onRegistration(const hidl_string&, const hidl_string&, bool) override {
        if (const sp<HidlHealthInfoListener> listener = mListener.promote(); listener != nullptr) {
            listener->init();
        }
        return {};
    }

  private:
    const wp<HidlHealthInfoListener> mListener;
};

HidlHealthInfoListener::HidlHealthInfoListener(HealthObserver observer)
      : mState(std::move(observer)) {}

HidlHealthInfoListener::~HidlHealthInfoListener() {
    Mutex::Autolock lock(mServiceMutex);
    if (mHealth != nullptr && !mHealth->unregisterCallback(mCallback).isOk()) {
        KLOGE("[%s], Transaction error, unregister hidl health service", __func__);
    }
}

bool HidlHealthInfoListener::isConnected() const {
    Mutex::Autolock lock(mServiceMutex);
    return mHealth != nullptr;
}

int HidlHealthInfoListener::init() {
    if (isConnected()) {
        return kAlreadyConnected;
    }
    {
        Mutex::Autolock lock(mServiceMutex);
        if (mCallback == nullptr) {
            mCallback = new Callback(this);
        }
    }
    const int status = mCaller.ask(
            kNoService, [self = sp<HidlHealthInfoListener>(this)] { return self->connect(); });
    watchRegistrations();
    return status;
}

/** May wait for a service that the manifest names. */
int HidlHealthInfoListener::connect() {
    const sp<IHealth> health = get_health_service();
    if (health == nullptr) {
        KLOGE("get hidl health service failed.");
        return kNoService;
    }
    // The handle stands before the link, so that a death at once finds it.
    if (!take(health)) {
        return kAlreadyConnected;
    }
    if (!subscribe(health)) {
        drop();
        return kNoService;
    }
    mWasConnected = true;
    KLOGD("[%s], init hidl health service success.", "init");
    return 0;
}

/** Once. A registration that came before is told at once, and finds the listener connected. */
void HidlHealthInfoListener::watchRegistrations() {
    const sp<Registrations> registrations = new Registrations(this);
    {
        Mutex::Autolock lock(mServiceMutex);
        if (mRegistrations != nullptr) {
            return;
        }
        mRegistrations = registrations;
    }
    if (!IHealth::registerForNotifications("default", registrations)) {
        KLOGE("nobody tells when the hidl health service comes");
    }
}

bool HidlHealthInfoListener::take(const sp<IHealth>& health) {
    Mutex::Autolock lock(mServiceMutex);
    const bool free = mHealth == nullptr;
    if (free) {
        mHealth = health;
    }
    return free;
}

void HidlHealthInfoListener::drop() {
    sp<IHealth> dropped;  // released after the lock
    Mutex::Autolock lock(mServiceMutex);
    dropped = mHealth;
    mHealth = nullptr;
}

bool HidlHealthInfoListener::subscribe(const sp<IHealth>& health) {
    const Return<Result> registered = health->registerCallback(mCallback);
    if (!registered.isOk() || registered != Result::SUCCESS) {
        KLOGE("[%s], the hidl health service takes no callback", "init");
        return false;
    }
    const Return<bool> linked = health->linkToDeath(this, 0);
    if (!linked.isOk() || !linked) {
        KLOGE("[%s], Failed to link to death of the hidl health service", "init");
        health->unregisterCallback(mCallback).isOk();  // or it would be called twice
        return false;
    }
    const Return<Result> updated = health->update();
    const auto result = static_cast<int>(updated.withDefault(Result::UNKNOWN));
    if (result != static_cast<int>(Result::SUCCESS)) {
        KLOGE("health update failed(ret=%d).", result);
    }
    return true;
}

Return<void> HidlHealthInfoListener::healthInfoChanged(const HealthInfo& info) {
    mState.update(info.legacy.chargerAcOnline, info.legacy.chargerUsbOnline,
                  info.legacy.chargerWirelessOnline);
    return {};
}

void HidlHealthInfoListener::serviceDied(uint64_t, const wp<IBase>& who) {
    sp<IHealth> dead;  // released after the lock
    {
        Mutex::Autolock lock(mServiceMutex);
        if (mHealth != nullptr && interfacesEqual(mHealth, who.promote())) {
            dead = mHealth;
            mHealth = nullptr;
        }
    }
    if (dead == nullptr) {
        KLOGE("[%s], hidl health service not init or unknown err.", __func__);
        return;
    }
    KLOGE("[%s], hidl health service died, will try to reconnect.", __func__);
    init();
}
