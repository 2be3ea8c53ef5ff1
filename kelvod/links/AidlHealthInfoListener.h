#pragma once

#include <aidl/android/hardware/health/BnHealthInfoCallback.h>
#include <aidl/android/hardware/health/IHealth.h>
#include <android/binder_auto_utils.h>
#include <utils/Mutex.h>
#include <utils/StrongPointer.h>

#include <memory>

#include "links/HealthState.h"
#include "links/PatientCaller.h"

/**
 * Listens to the platform's AIDL health service. When it dies the listener connects again at once;
 * when that fails, as soon as the service manager tells that it is registered, and reconnect()
 * tries again.
 *
 * Thread-safe. Made with ndk::SharedRefBase::make and kept for as long as the process runs.
 */
class AidlHealthInfoListener : public aidl::android::hardware::health::BnHealthInfoCallback {
  public:
    using IHealth = aidl::android::hardware::health::IHealth;

    explicit AidlHealthInfoListener(HealthObserver observer);

    /** Name of the service: the interface with the instance "default". */
    static std::string instanceName();

    /**
     * Connects: 0, -38 when connected already, -19 when there is no service or it refuses or is
     * late, or the status of the link to its death. The first call asks for notices.
     */
    int init();
    /**
     * While there is no service: asks for one, at most once in five seconds. A connection that was
     * refused or lost counts as an ask.
     */
    void reconnect();

    const HealthState& state() const { return mState; }

    ndk::ScopedAStatus healthInfoChanged(
            const aidl::android::hardware::health::HealthInfo& info) override;
    void serviceDied();

  private:
    class Registrations;

    bool isConnected() const;
    int askAndConnect();
    int connect();
    int subscribe(const std::shared_ptr<IHealth>& health);
    void watchRegistrations();
    void onRegistration();
    bool takeAsk();

    HealthState mState;
    const ndk::ScopedAIBinder_DeathRecipient mDeathRecipient;
    kelvo::PatientCaller mCaller{"the health service"};

    // Guards what follows; a leaf, the service is called without it.
    mutable android::Mutex mServiceMutex;
    std::shared_ptr<IHealth> mHealth GUARDED_BY(mServiceMutex);  // null while not connected
    int64_t mLastAsk GUARDED_BY(mServiceMutex) = 0;              // monotonic, ns
    android::sp<Registrations> mRegistrations GUARDED_BY(mServiceMutex);  // once they are told
};
