#pragma once

#include <aidl/android/hardware/health/BnHealthInfoCallback.h>
#include <aidl/android/hardware/health/IHealth.h>
#include <android/binder_auto_utils.h>
#include <utils/Mutex.h>

#include <memory>

#include "links/HealthState.h"

/**
 * Listens to the platform's AIDL health service. When it dies the listener connects again at once;
 * when that fails, reconnect() tries again.
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
     * Connects, waiting some seconds for a service that is not there: 0, -38 when connected
     * already, -19 when there is no service or it refuses, or the status of the link to its death.
     */
    int init();
    /**
     * While there is no service: asks for one without waiting, at most once in five seconds. A
     * connection that was refused or lost counts as an ask.
     */
    void reconnect();

    const HealthState& state() const { return mState; }

    ndk::ScopedAStatus healthInfoChanged(
            const aidl::android::hardware::health::HealthInfo& info) override;
    void serviceDied();

  private:
    bool isConnected() const;
    int connect(const ndk::SpAIBinder& binder);
    int subscribe(const std::shared_ptr<IHealth>& health);
    bool takeAsk();

    HealthState mState;
    const ndk::ScopedAIBinder_DeathRecipient mDeathRecipient;

    // Guards what follows; a leaf, the service is called without it.
    mutable android::Mutex mServiceMutex;
    std::shared_ptr<IHealth> mHealth GUARDED_BY(mServiceMutex);  // null while not connected
    int64_t mLastAsk GUARDED_BY(mServiceMutex) = 0;              // monotonic, ns
};
