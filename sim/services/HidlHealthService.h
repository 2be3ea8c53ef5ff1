#pragma once

#include <memory>

#include "sim/services/PhoneService.h"

namespace sim {

/** The health HAL of older phones, HIDL 2.0. Clients hear of each change, and when they ask. */
class HidlHealthService : public PhoneService {
  public:
    static constexpr char kInstance[] = "hidl/android.hardware.health/2.0/IHealth/default";

    explicit HidlHealthService(const ServiceContext& context);
    ~HidlHealthService() override;
    void perform(const Deed& deed) override;

  private:
    struct Parts;
    const std::unique_ptr<Parts> mParts;
};

}  // namespace sim
