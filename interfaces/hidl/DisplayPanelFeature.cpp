#include <vendor/zenta/hardware/displaypanelfeature/1.0/IDisplayPanelFeature.h>

#include <hidl_linux/HidlProxy.h>
#include <hidl_linux/HidlStub.h>

namespace vendor::zenta::hardware::displaypanelfeature::V1_0 {

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
    kGetDisplayPanelFeatureValue = IBinder::FIRST_CALL_TRANSACTION,
};

class BpHwDisplayPanelFeature final : public HidlProxy<IDisplayPanelFeature> {
  public:
    using HidlProxy::HidlProxy;

    Return<void> getDisplayPanelFeatureValue(uint32_t id,
                                             getDisplayPanelFeatureValue_cb callback) override {
        return query(kGetDisplayPanelFeatureValue, callback, id);
    }
};

class BnHwDisplayPanelFeature final : public HidlStubOf<IDisplayPanelFeature> {
  public:
    using HidlStubOf::HidlStubOf;

  protected:
    status_t dispatch(uint32_t code, const Parcel& data, Parcel* reply) override {
        return code == kGetDisplayPanelFeatureValue
                       ? serveQuery(data, reply, &IDisplayPanelFeature::getDisplayPanelFeatureValue)
                       : HidlStubOf::dispatch(code, data, reply);
    }
};

}  // namespace

const char* const IDisplayPanelFeature::descriptor =
        "vendor.zenta.hardware.displaypanelfeature@1.0::IDisplayPanelFeature";

sp<IDisplayPanelFeature> IDisplayPanelFeature::_hidl_newProxy(const sp<IBinder>& remote) {
    return new BpHwDisplayPanelFeature(remote);
}

sp<BBinder> IDisplayPanelFeature::_hidl_newStubOf(const sp<IDisplayPanelFeature>& object) {
    return new BnHwDisplayPanelFeature(object);
}

}  // namespace vendor::zenta::hardware::displaypanelfeature::V1_0
