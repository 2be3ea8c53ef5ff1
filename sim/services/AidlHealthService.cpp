#include "sim/services/AidlHealthService.h"

#include <aidl/android/hardware/health/BnHealth.h>
#include <android/binder_libbinder.h>

#include "sim/services/PublishedBinder.h"

namespace sim {

namespace {

using namespace aidl::android::hardware::health;
using ndk::ScopedAStatus;
using Callback = std::shared_ptr<IHealthInfoCallback>;

ScopedAStatus unsupported() {
    return ScopedAStatus::fromExceptionCode(EX_UNSUPPORTED_OPERATION);
}

class HealthHalImpl : public BnHealth {
  public:
    explicit HealthHalImpl(const ServiceContext& context) : mContext(context) {}

    ScopedAStatus registerCallback(const Callback& callback) override {
        if (callback == nullptr) {
            return ScopedAStatus::fromExceptionCode(EX_NULL_POINTER);
        }
        {
            android::Mutex::Autolock lock(mMutex);
            mCallbacks.push_back(callback);
        }
        mContext.onClient();
        return ScopedAStatus::ok();
    }
    ScopedAStatus unregisterCallback(const Callback& callback) override {
        android::Mutex::Autolock lock(mMutex);
        const auto same = [&](const Callback& known) {
            return callback != nullptr && known->asBinder() == callback->asBinder();
        };
        return std::erase_if(mCallbacks, same) > 0
                       ? ScopedAStatus::ok()
                       : ScopedAStatus::fromExceptionCode(EX_ILLEGAL_ARGUMENT);
    }
    ScopedAStatus update() override {
        std::vector<Callback> callbacks;
        {
            android::Mutex::Autolock lock(mMutex);
            callbacks = mCallbacks;
        }
        for (const Callback& callback : callbacks) {
            callback->healthInfoChanged(info());  // one-way: a dead client is no concern of ours
        }
        return ScopedAStatus::ok();
    }
    ScopedAStatus getHealthInfo(HealthInfo* out) override {
        *out = info();
        return ScopedAStatus::ok();
    }
    ScopedAStatus getCurrentNowMicroamps(int32_t*) override { return unsupported(); }
    ScopedAStatus getChargeCounterUah(int32_t*) override { return unsupported(); }
    ScopedAStatus getCurrentAverageMicroamps(int32_t*) override { return unsupported(); }
    ScopedAStatus getCapacity(int32_t*) override { return unsupported(); }
    ScopedAStatus getEnergyCounterNwh(int64_t*) override { return unsupported(); }
    ScopedAStatus getChargeStatus(int32_t*) override { return unsupported(); }
    ScopedAStatus getStorageInfo(std::vector<StorageInfo>*) override { return unsupported(); }
    ScopedAStatus getDiskStats(std::vector<DiskStats>*) override { return unsupported(); }

  private:
    HealthInfo info() const {
        const PhoneValues values = mContext.values.get();
        HealthInfo info;
        info.chargerAcOnline = values.health.ac;
        info.chargerUsbOnline = values.health.usb;
        info.chargerWirelessOnline = values.health.wireless;
        info.batteryPresent = true;
        return info;
    }

    const ServiceContext mContext;
    android::Mutex mMutex;  // guards the callbacks; a leaf, nobody is called under it
    std::vector<Callback> mCallbacks GUARDED_BY(mMutex);
};

}  // namespace

struct AidlHealthService::Parts {
    explicit Parts(const ServiceContext& context)
          : hal(ndk::SharedRefBase::make<HealthHalImpl>(context)),
            published(kInstance, AIBinder_toPlatformBinder(hal->asBinder().get())) {}

    const std::shared_ptr<HealthHalImpl> hal;
    const PublishedBinder published;
};

AidlHealthService::AidlHealthService(const ServiceContext& context)
      : mParts(std::make_unique<Parts>(context)) {}

AidlHealthService::~AidlHealthService() = default;

void AidlHealthService::perform(const Deed&) {
    mParts->hal->update();
}

}  // namespace sim
