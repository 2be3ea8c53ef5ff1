#include <vendor/zenta/hardware/charger/1.0/ICharger.h>

#include <hidl_linux/HidlProxy.h>
#include <hidl_linux/HidlStub.h>

namespace vendor::zenta::hardware::charger::V1_0 {

using android::BBinder;
using android::IBinder;
using android::Parcel;
using android::sp;
using android::status_t;
using android::hardware::Return;
using android::hardware::details::HidlProxy;
using android::hardware::details::HidlStubOf;

namespace {

enum Code : uint32_t {
    kGetBatteryCurrentNow = IBinder::FIRST_CALL_TRANSACTION,
    kNotifyScreenStatus,
};

class BpHwCharger final : public HidlProxy<ICharger> {
  public:
    using HidlProxy::HidlProxy;

    Return<int32_t> getBatteryCurrentNow() override { return call<int32_t>(kGetBatteryCurrentNow); }
    Return<void> notifyScreenStatus(int32_t status) override {
        return call<void>(kNotifyScreenStatus, status);
    }
};

class BnHwCharger final : public HidlStubOf<ICharger> {
  public:
    using HidlStubOf::HidlStubOf;

  protected:
    status_t dispatch(uint32_t code, const Parcel& data, Parcel* reply) override {
        switch (code) {
            case kGetBatteryCurrentNow:
                return serve(data, reply, &ICharger::getBatteryCurrentNow);
            case kNotifyScreenStatus:
                return serve(data, reply, &ICharger::notifyScreenStatus);
            default:
                return HidlStubOf::dispatch(code, data, reply);
        }
    }
};

}  // namespace

const char* const ICharger::descriptor = "vendor.zenta.hardware.charger@1.0::ICharger";

sp<ICharger> ICharger::_hidl_newProxy(const sp<IBinder>& remote) {
    return new BpHwCharger(remote);
}

sp<BBinder> ICharger::_hidl_newStubOf(const sp<ICharger>& object) {
    return new BnHwCharger(object);
}

}  // namespace vendor::zenta::hardware::charger::V1_0
