#pragma once

#include <android/hardware/health/2.0/types.h>
#include <hidl_linux/HidlInterface.h>

namespace android::hardware::health::V2_0 {

/** What a client of IHealth implements. Called on binder threads. */
struct IHealthInfoCallback : public details::HidlInterface<IHealthInfoCallback> {
    static const char* const descriptor;

    /** Something has changed, or update() was asked for. One-way. */
    virtual Return<void> healthInfoChanged(const HealthInfo& info) = 0;

    static sp<IHealthInfoCallback> _hidl_newProxy(const sp<IBinder>& remote);
    static sp<BBinder> _hidl_newStubOf(const sp<IHealthInfoCallback>& object);
};

}  // namespace android::hardware::health::V2_0
