#pragma once

#include <memory>

#include "sim/services/PhoneService.h"

namespace sim {

/** The health HAL as an AIDL service. Clients hear of each change, but not when they register. */
class AidlHealthService : public PhoneService {
  public:
    static constexpr char kInstance[] = "android.hardware.health.IHealth/default";

    explicit AidlHealthService(const ServiceContext& context);
    ~AidlHealthService() override;
    void perform(const Deed& deed) override;

  private:
    struct Parts;
    const std::unique_ptr<Parts> mParts;
};

}  // namespace sim
