#include "sim/services/PerformanceService.h"

#include <aidl/vendor/zenta/hardware/performance/BnPerformance.h>
#include <android/binder_libbinder.h>

#include <string>

#include "sim/services/PublishedBinder.h"

namespace sim {

namespace {

class PerformanceImpl : public aidl::vendor::zenta::hardware::performance::BnPerformance {
  public:
    explicit PerformanceImpl(const ServiceContext& context) : mContext(context) {}

    ndk::ScopedAStatus readCpuTaskstats(std::string* out) override {
        *out = mContext.values.get().taskStats;
        return ndk::ScopedAStatus::ok();
    }

  private:
    const ServiceContext mContext;
};

}  // namespace

struct PerformanceService::Parts {
    explicit Parts(const ServiceContext& context)
          : hal(ndk::SharedRefBase::make<PerformanceImpl>(context)),
            published(kInstance, AIBinder_toPlatformBinder(hal->asBinder().get())) {}

    const std::shared_ptr<PerformanceImpl> hal;
    const PublishedBinder published;
};

PerformanceService::PerformanceService(const ServiceContext& context)
      : mParts(std::make_unique<Parts>(context)) {}

PerformanceService::~PerformanceService() = default;

}  // namespace sim
