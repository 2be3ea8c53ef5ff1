#pragma once

#include <hidl_linux/HidlInterface.h>

#include <cstdint>

namespace vendor::zenta::hardware::charger::V1_0 {

/** The maker's charger. Thread-safe. */
struct ICharger : public android::hardware::details::HidlInterface<ICharger> {
    static const char* const descriptor;

    /** The battery current now; its sign and unit are the charger's own. */
    virtual android::hardware::Return<int32_t> getBatteryCurrentNow() = 0;
    /** Tells the charger of the screen's state. */
    virtual android::hardware::Return<void> notifyScreenStatus(int32_t status) = 0;

    static android::sp<ICharger> _hidl_newProxy(const android::sp<android::IBinder>& remote);
    static android::sp<android::BBinder> _hidl_newStubOf(const android::sp<ICharger>& object);
};

}  // namespace vendor::zenta::hardware::charger::V1_0
