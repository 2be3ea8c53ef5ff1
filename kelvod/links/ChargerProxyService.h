#pragma once

#include <utils/Mutex.h>
#include <utils/Singleton.h>
#include <vendor/zenta/hardware/charger/1.0/ICharger.h>

#include <cstdint>

/**
 * The daemon's client of the vendor's charger HAL. Connects when it is first needed, and again on
 * the first call after the HAL died. Thread-safe; a HAL that does not answer holds up all callers.
 */
class ChargerProxyService : public android::Singleton<ChargerProxyService> {
  public:
    using ICharger = vendor::zenta::hardware::charger::V1_0::ICharger;

    /** The battery current (mA, below 0 while charging); -1 when the HAL cannot be reached. */
    int32_t getBatteryCurrentNow();
    /** Tells the HAL the screen status as a client of the daemon gave it. */
    void notifyScreenStatus(int status);

  private:
    friend class android::Singleton<ChargerProxyService>;
    ChargerProxyService() = default;

    class ChargerProxyServiceDeathRecipient : public android::hardware::hidl_death_recipient {
      public:
        explicit ChargerProxyServiceDeathRecipient(ChargerProxyService* owner) : mOwner(owner) {}
        void serviceDied(uint64_t cookie,
                         const android::wp<android::hidl::base::V1_0::IBase>& who) override;

      private:
        ChargerProxyService* const mOwner;  // never ends
    };

    bool checkService() REQUIRES(mMutex);
    bool linkToDeath() REQUIRES(mMutex);
    void forget();

    // Guards the handle. Held across the calls to the HAL, so nothing that a caller of this class
    // holds may be wanted by the HAL's process; inside it only what binder itself takes.
    android::Mutex mMutex;
    android::sp<ICharger> mCharger GUARDED_BY(mMutex);  // null while not connected
    android::sp<ChargerProxyServiceDeathRecipient> mDeathRecipient GUARDED_BY(mMutex);
};
