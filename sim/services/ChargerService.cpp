#include "sim/services/ChargerService.h"

#include <vendor/zenta/hardware/charger/1.0/ICharger.h>

#include "sim/services/PublishedBinder.h"

namespace sim {

namespace {

using android::sp;
using android::hardware::Return;
using android::hardware::Void;
using vendor::zenta::hardware::charger::V1_0::ICharger;

class ChargerHal : public ICharger {
  public:
    explicit ChargerHal(const ServiceContext& context) : mContext(context) {}

    Return<int32_t> getBatteryCurrentNow() override { return mContext.values.get().batteryCurrent; }
    Return<void> notifyScreenStatus(int32_t status) override {
        mContext.onEvent({0, "charger_screen_status", {{"status", status}}});
        return Void();
    }

  private:
    const ServiceContext mContext;
};

}  // namespace

struct ChargerService::Parts {
    explicit Parts(const ServiceContext& context)
          : hal(new ChargerHal(context)), published(ICharger::descriptor, hal) {}

    const sp<ICharger> hal;
    const PublishedHidl published;
};

ChargerService::ChargerService(const ServiceContext& context)
      : mParts(std::make_unique<Parts>(context)) {}

ChargerService::~ChargerService() = default;

}  // namespace sim
