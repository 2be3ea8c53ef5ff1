#pragma once

#include <utils/Mutex.h>
#include <utils/Singleton.h>
#include <vendor/zenta/hardware/charger/1.0/ICharger.h>

#include <cstdint>

#include "links/PatientCaller.h"

/**
 * The daemon's client of the vendor's charger HAL. Connects when it is first needed, and again on
 * the first call after the HAL died. Thread-safe; a HAL that hangs costs a caller a second once.
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
    ChargerProxyService();

    class ChargerProxyServiceDeathRecipient : public android::hardware::hidl_death_recipient {
      public:
        explicit ChargerProxyServiceDeathRecipient(ChargerProxyService* owner) : mOwner(owner) {}
        void serviceDied(uint64_t cookie,
                         const android::wp<android::hidl::base::V1_0::IBase>& who) override;

      private:
        ChargerProxyService* const mOwner;  // never ends
    };

    android::sp<ICharger> connection();
    bool linkToDeath(const android::sp<ICharger>& charger);
    void take(android::sp<ICharger> charger);

    const android::sp<ChargerProxyServiceDeathRecipient> mDeathRecipient;
    kelvo::PatientCaller mCaller{"the charger service"};  // one call at a time, also to connect

    android::Mutex mMutex;  // guards the handle; a leaf, the HAL is called without it
    android::sp<ICharger> mCharger GUARDED_BY(mMutex);  // null while not connected
};
