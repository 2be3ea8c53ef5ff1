#include "sim/services/HidlHealthService.h"

#include <android/hardware/health/2.0/IHealth.h>
#include <hidl/HidlTransportSupport.h>
#include <hidl_linux/ServiceManagement.h>

#include "sim/services/PublishedBinder.h"

namespace sim {

namespace {

using namespace android::hardware::health::V2_0;
using android::sp;
using android::hardware::interfacesEqual;
using android::hardware::Return;
using android::hardware::Void;
using Callback = sp<IHealthInfoCallback>;

class HealthHalImpl : public IHealth {
  public:
    explicit HealthHalImpl(const ServiceContext& context) : mContext(context) {}

    Return<Result> registerCallback(const Callback& callback) override {
        if (callback == nullptr) {
            return Result::UNKNOWN;
        }
        {
            android::Mutex::Autolock lock(mMutex);
            mCallbacks.push_back(callback);
        }
        mContext.onClient();
        return Result::SUCCESS;
    }
    Return<Result> unregisterCallback(const Callback& callback) override {
        android::Mutex::Autolock lock(mMutex);
        const auto same = [&](const Callback& known) { return interfacesEqual(known, callback); };
        return std::erase_if(mCallbacks, same) > 0 ? Result::SUCCESS : Result::NOT_FOUND;
    }
    Return<Result> update() override {
        std::vector<Callback> callbacks;
        {
            android::Mutex::Autolock lock(mMutex);
            callbacks = mCallbacks;
        }
        for (const Callback& callback : callbacks) {
            callback->healthInfoChanged(info()).isOk();  // a dead client is no concern of ours
        }
        return Result::SUCCESS;
    }
    Return<void> getHealthInfo(getHealthInfo_cb tell) override {
        tell(Result::SUCCESS, info());
        return Void();
    }
    Return<void> getChargeCounter(getChargeCounter_cb tell) override { return refuse(tell); }
    Return<void> getCurrentNow(getCurrentNow_cb tell) override { return refuse(tell); }
    Return<void> getCurrentAverage(getCurrentAverage_cb tell) override { return refuse(tell); }
    Return<void> getCapacity(getCapacity_cb tell) override { return refuse(tell); }
    Return<void> getEnergyCounter(getEnergyCounter_cb tell) override { return refuse(tell); }
    Return<void> getChargeStatus(getChargeStatus_cb tell) override { return refuse(tell); }
    Return<void> getStorageInfo(getStorageInfo_cb tell) override { return refuse(tell); }
    Return<void> getDiskStats(getDiskStats_cb tell) override { return refuse(tell); }

  private:
    template <typename Tell>
    static Return<void> refuse(const Tell& tell) {
        tell(Result::NOT_SUPPORTED, {});
        return Void();
    }
    HealthInfo info() const {
        const PhoneValues values = mContext.values.get();
        HealthInfo info;
        info.legacy.chargerAcOnline = values.health.ac;
        info.legacy.chargerUsbOnline = values.health.usb;
        info.legacy.chargerWirelessOnline = values.health.wireless;
        info.legacy.batteryPresent = true;
        return info;
    }

    const ServiceContext mContext;
    android::Mutex mMutex;  // guards the callbacks; a leaf, nobody is called under it
    std::vector<Callback> mCallbacks GUARDED_BY(mMutex);
};

}  // namespace

struct HidlHealthService::Parts {
    explicit Parts(const ServiceContext& context)
          : hal(new HealthHalImpl(context)), published(IHealth::descriptor, hal) {}

    const sp<HealthHalImpl> hal;
    const PublishedHidl published;
};

HidlHealthService::HidlHealthService(const ServiceContext& context)
      : mParts(std::make_unique<Parts>(context)) {}

HidlHealthService::~HidlHealthService() = default;

void HidlHealthService::perform(const Deed&) {
    mParts->hal->update().isOk();
}

}  // namespace sim
