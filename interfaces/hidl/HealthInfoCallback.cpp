#include <android/hardware/health/2.0/IHealthInfoCallback.h>

#include <hidl_linux/HidlProxy.h>
#include <hidl_linux/HidlStub.h>

#include "HealthFields.h"

namespace android::hardware::health::V2_0 {

namespace {

enum Code : uint32_t {
    kHealthInfoChanged = IBinder::FIRST_CALL_TRANSACTION,
};

class BpHwHealthInfoCallback final : public details::HidlProxy<IHealthInfoCallback> {
  public:
    using HidlProxy::HidlProxy;

    Return<void> healthInfoChanged(const HealthInfo& info) override {
        return send(kHealthInfoChanged, info);
    }
};

class BnHwHealthInfoCallback final : public details::HidlStubOf<IHealthInfoCallback> {
  public:
    using HidlStubOf::HidlStubOf;

  protected:
    status_t dispatch(uint32_t code, const Parcel& data, Parcel* reply) override {
        return code == kHealthInfoChanged
                       ? serve(data, reply, &IHealthInfoCallback::healthInfoChanged)
                       : HidlStubOf::dispatch(code, data, reply);
    }
};

}  // namespace

const char* const IHealthInfoCallback::descriptor =
        "android.hardware.health@2.0::IHealthInfoCallback";

sp<IHealthInfoCallback> IHealthInfoCallback::_hidl_newProxy(const sp<IBinder>& remote) {
    return new BpHwHealthInfoCallback(remote);
}

sp<BBinder> IHealthInfoCallback::_hidl_newStubOf(const sp<IHealthInfoCallback>& object) {
    return new BnHwHealthInfoCallback(object);
}

}  // namespace android::hardware::health::V2_0
