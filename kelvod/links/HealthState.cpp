#include "links/HealthState.h"

#include "config/ConfigNames.h"
#include "core/KelvoState.h"

using android::Mutex;

void HealthState::update(bool ac, bool usb, bool wireless) {
    const bool charging = ac || usb || wireless;
    Mutex::Autolock lock(mMutex);
    if (charging) {
        KelvoState::getInstance().setChargingTime();
    }
    mChargeStats = charging;
    if (charging != mLastChargeStats) {
        mLastChargeStats = charging;
        mObserver.onCharge(charging);
    }
    if (wireless != mChargerWireless) {
        mChargerWireless = wireless;
        mObserver.onWireless(wireless ? kelvo::scene::kWirelessCharge : kelvo::scene::kDefault);
    }
}

bool HealthState::isCharging() const {
    Mutex::Autolock lock(mMutex);
    return mChargeStats;
}

bool HealthState::isChargingWirelessly() const {
    Mutex::Autolock lock(mMutex);
    return mChargerWireless;
}
