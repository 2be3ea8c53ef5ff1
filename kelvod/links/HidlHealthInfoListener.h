#pragma once

#include <android/hardware/health/2.0/IHealth.h>
#include <android/hardware/health/2.0/IHealthInfoCallback.h>
#include <utils/Mutex.h>

#include <atomic>

#include "links/HealthState.h"
#include "links/PatientCaller.h"

/**
 * Listens to the platform's HIDL 2.0 health service, on phones without the AIDL one. When it dies
 * the listener connects again at once; when that fails, as soon as it is registered. Thread-safe.
 */
class HidlHealthInfoListener : public android::hardware::health::V2_0::IHealthInfoCallback,
                               public android::hardware::hidl_death_recipient {
  public:
    using IHealth = android::hardware::health::V2_0::IHealth;
    using IBase = android::hidl::base::V1_0::IBase;

    explicit HidlHealthInfoListener(HealthObserver observer);
    ~HidlHealthInfoListener() override;

    /**
     * Connects: 0, -38 when connected already, -19 when there is no service or it refuses or is
     * late. A service that the manifest names and that comes late is connected when it comes. The
     * first call asks for notices.
     */
    int init();
    /** Whether it was ever connected. */
    bool wasConnected() const { return mWasConnected; }

    const HealthState& state() const { return mState; }

    android::hardware::Return<void> healthInfoChanged(
            const android::hardware::health::V2_0::HealthInfo& info) override;
    void serviceDied(uint64_t cookie, const android::wp<IBase>& who) override;

  private:
    class Callback;
    class Registrations;

    int connect();
    void watchRegistrations();
    bool isConnected() const;
    bool take(const android::sp<IHealth>& health);
    void drop();
    bool subscribe(const android::sp<IHealth>& health);

    HealthState mState;
    std::atomic<bool> mWasConnected = false;
    kelvo::PatientCaller mCaller{"the health service"};
    android::sp<Callback> mCallback;  // what the service knows; set by the first init()

    // Guards the handle; a leaf: the service is called without it, but at the end of a listener.
    mutable android::Mutex mServiceMutex;
    android::sp<IHealth> mHealth GUARDED_BY(mServiceMutex);  // null while not connected
    android::sp<Registrations> mRegistrations GUARDED_BY(mServiceMutex);  // once they are told
};
