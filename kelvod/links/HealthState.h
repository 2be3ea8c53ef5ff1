#pragma once

#include <utils/Mutex.h>

#include <functional>
#include <string>

/** Whom a health listener tells of changes; called with the listener's mutex held. */
struct HealthObserver {
    std::function<void(bool charging)> onCharge;
    /** "wirless_charge" when a wireless charger has come, "default" when it has gone. */
    std::function<void(const std::string& scene)> onWireless;
};

/** What the health service last said, and the changes in it. Thread-safe. */
class HealthState {
  public:
    explicit HealthState(HealthObserver observer) : mObserver(std::move(observer)) {}

    /** Takes a callback of the service: which chargers are online. */
    void update(bool ac, bool usb, bool wireless);
    bool isCharging() const;
    bool isChargingWirelessly() const;

  private:
    const HealthObserver mObserver;
    // Guards what follows; under it the observer posts messages, and the central state's mutex is
    // taken.
    mutable android::Mutex mMutex;
    bool mChargerWireless GUARDED_BY(mMutex) = false;  // as last seen
    bool mLastChargeStats GUARDED_BY(mMutex) = false;  // as last announced
    bool mChargeStats GUARDED_BY(mMutex) = false;      // of the latest callback
};
