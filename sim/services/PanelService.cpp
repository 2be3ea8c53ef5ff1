#include "sim/services/PanelService.h"

#include <vendor/zenta/hardware/displaypanelfeature/1.0/IDisplayPanelFeature.h>

namespace sim {

namespace {

using android::hardware::Return;
using android::hardware::Void;
using vendor::zenta::hardware::displaypanelfeature::V1_0::IDisplayPanelFeature;

constexpr uint32_t kLevelId = 29;
constexpr uint32_t kMaxLevelId = 33;

class PanelHal : public IDisplayPanelFeature {
  public:
    explicit PanelHal(const ServiceContext& context) : mContext(context) {}

    Return<void> getDisplayPanelFeatureValue(uint32_t id,
                                             getDisplayPanelFeatureValue_cb callback) override {
        const PhoneValues values = mContext.values.get();
        if (id == kLevelId || id == kMaxLevelId) {
            callback(0, {id == kLevelId ? values.panelLevel : values.panelMax});
        } else {
            callback(android::BAD_VALUE, {});
        }
        return Void();
    }

  private:
    const ServiceContext mContext;
};

}  // namespace

PanelService::PanelService(const ServiceContext& context)
      : mPublished(IDisplayPanelFeature::descriptor, new PanelHal(context)) {}

}  // namespace sim
