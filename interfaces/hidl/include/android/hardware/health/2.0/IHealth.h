#pragma once

#include <android/hardware/health/2.0/IHealthInfoCallback.h>
#include <android/hardware/health/2.0/types.h>
#include <hidl_linux/HidlInterface.h>

#include <functional>

namespace android::hardware::health::V2_0 {

/** Battery and chargers. A value is good only with Result::SUCCESS. Thread-safe. */
struct IHealth : public details::HidlInterface<IHealth> {
    using getChargeCounter_cb = std::function<void(Result result, int32_t value)>;
    using getCurrentNow_cb = std::function<void(Result result, int32_t value)>;
    using getCurrentAverage_cb = std::function<void(Result result, int32_t value)>;
    using getCapacity_cb = std::function<void(Result result, int32_t value)>;
    using getEnergyCounter_cb = std::function<void(Result result, int64_t value)>;
    using getChargeStatus_cb = std::function<void(Result result, V1_0::BatteryStatus value)>;
    using getStorageInfo_cb =
            std::function<void(Result result, const hidl_vec<StorageInfo>& value)>;
    using getDiskStats_cb = std::function<void(Result result, const hidl_vec<DiskStats>& value)>;
    using getHealthInfo_cb = std::function<void(Result result, const HealthInfo& value)>;

    static const char* const descriptor;

    /** The callback hears of changes until it is unregistered or its process ends. */
    virtual Return<Result> registerCallback(const sp<IHealthInfoCallback>& callback) = 0;
    virtual Return<Result> unregisterCallback(const sp<IHealthInfoCallback>& callback) = 0;
    /** Reads everything anew and tells all callbacks. */
    virtual Return<Result> update() = 0;
    /** µAh left in the battery. */
    virtual Return<void> getChargeCounter(getChargeCounter_cb callback) = 0;
    /** µA, positive into the battery. */
    virtual Return<void> getCurrentNow(getCurrentNow_cb callback) = 0;
    /** µA, positive into the battery. */
    virtual Return<void> getCurrentAverage(getCurrentAverage_cb callback) = 0;
    /** Percent. */
    virtual Return<void> getCapacity(getCapacity_cb callback) = 0;
    /** nWh left in the battery. */
    virtual Return<void> getEnergyCounter(getEnergyCounter_cb callback) = 0;
    virtual Return<void> getChargeStatus(getChargeStatus_cb callback) = 0;
    virtual Return<void> getStorageInfo(getStorageInfo_cb callback) = 0;
    virtual Return<void> getDiskStats(getDiskStats_cb callback) = 0;
    virtual Return<void> getHealthInfo(getHealthInfo_cb callback) = 0;

    static sp<IHealth> _hidl_newProxy(const sp<IBinder>& remote);
    static sp<BBinder> _hidl_newStubOf(const sp<IHealth>& object);
};

}  // namespace android::hardware::health::V2_0
