#include <android/hardware/health/2.0/IHealth.h>

#include <hidl_linux/HidlProxy.h>
#include <hidl_linux/HidlStub.h>

#include "HealthFields.h"

namespace android::hardware::health::V2_0 {

namespace {

enum Code : uint32_t {
    kRegisterCallback = IBinder::FIRST_CALL_TRANSACTION,
    kUnregisterCallback,
    kUpdate,
    kGetChargeCounter,
    kGetCurrentNow,
    kGetCurrentAverage,
    kGetCapacity,
    kGetEnergyCounter,
    kGetChargeStatus,
    kGetStorageInfo,
    kGetDiskStats,
    kGetHealthInfo,
};

class BpHwHealth final : public details::HidlProxy<IHealth> {
  public:
    using HidlProxy::HidlProxy;

    Return<Result> registerCallback(const sp<IHealthInfoCallback>& callback) override {
        details::serveCallbacksFrom(_hidl_binder().get());
        return call<Result>(kRegisterCallback, callback);
    }
    Return<Result> unregisterCallback(const sp<IHealthInfoCallback>& callback) override {
        return call<Result>(kUnregisterCallback, callback);
    }
    Return<Result> update() override { return call<Result>(kUpdate); }

    Return<void> getChargeCounter(getChargeCounter_cb callback) override {
        return query(kGetChargeCounter, callback);
    }
    Return<void> getCurrentNow(getCurrentNow_cb callback) override {
        return query(kGetCurrentNow, callback);
    }
    Return<void> getCurrentAverage(getCurrentAverage_cb callback) override {
        return query(kGetCurrentAverage, callback);
    }
    Return<void> getCapacity(getCapacity_cb callback) override {
        return query(kGetCapacity, callback);
    }
    Return<void> getEnergyCounter(getEnergyCounter_cb callback) override {
        return query(kGetEnergyCounter, callback);
    }
    Return<void> getChargeStatus(getChargeStatus_cb callback) override {
        return query(kGetChargeStatus, callback);
    }
    Return<void> getStorageInfo(getStorageInfo_cb callback) override {
        return query(kGetStorageInfo, callback);
    }
    Return<void> getDiskStats(getDiskStats_cb callback) override {
        return query(kGetDiskStats, callback);
    }
    Return<void> getHealthInfo(getHealthInfo_cb callback) override {
        return query(kGetHealthInfo, callback);
    }
};

class BnHwHealth final : public details::HidlStubOf<IHealth> {
  public:
    using HidlStubOf::HidlStubOf;

  protected:
    status_t dispatch(uint32_t code, const Parcel& data, Parcel* reply) override {
        switch (code) {
            case kRegisterCallback:
                return serve(data, reply, &IHealth::registerCallback);
            case kUnregisterCallback:
                return serve(data, reply, &IHealth::unregisterCallback);
            case kUpdate:
                return serve(data, reply, &IHealth::update);
            case kGetChargeCounter:
                return serveQuery(data, reply, &IHealth::getChargeCounter);
            case kGetCurrentNow:
                return serveQuery(data, reply, &IHealth::getCurrentNow);
            case kGetCurrentAverage:
                return serveQuery(data, reply, &IHealth::getCurrentAverage);
            case kGetCapacity:
                return serveQuery(data, reply, &IHealth::getCapacity);
            case kGetEnergyCounter:
                return serveQuery(data, reply, &IHealth::getEnergyCounter);
            case kGetChargeStatus:
                return serveQuery(data, reply, &IHealth::getChargeStatus);
            case kGetStorageInfo:
                return serveQuery(data, reply, &IHealth::getStorageInfo);
            case kGetDiskStats:
                return serveQuery(data, reply, &IHealth::getDiskStats);
            case kGetHealthInfo:
                return serveQuery(data, reply, &IHealth::getHealthInfo);
            default:
                return HidlStubOf::dispatch(code, data, reply);
        }
    }
};

}  // namespace

const char* const IHealth::descriptor = "android.hardware.health@2.0::IHealth";

sp<IHealth> IHealth::_hidl_newProxy(const sp<IBinder>& remote) {
    return new BpHwHealth(remote);
}

sp<BBinder> IHealth::_hidl_newStubOf(const sp<IHealth>& object) {
    return new BnHwHealth(object);
}

}  // namespace android::hardware::health::V2_0
