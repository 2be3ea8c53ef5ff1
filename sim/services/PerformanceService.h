#pragma once

#include <memory>

#include "sim/services/PhoneService.h"

namespace sim {

/** The vendor's performance HAL: answers the task statistics as they were last set. */
class PerformanceService : public PhoneService {
  public:
    static constexpr char kInstance[] = "vendor.zenta.hardware.performance.IPerformance/default";

    explicit PerformanceService(const ServiceContext& context);
    ~PerformanceService() override;

  private:
    struct Parts;
    const std::unique_ptr<Parts> mParts;
};

}  // namespace sim
