#pragma once

#include <memory>

#include "sim/services/PhoneService.h"

namespace sim {

/** The vendor's charger HAL: answers the battery current, takes the screen status. */
class ChargerService : public PhoneService {
  public:
    explicit ChargerService(const ServiceContext& context);
    ~ChargerService() override;

  private:
    struct Parts;
    const std::unique_ptr<Parts> mParts;
};

}  // namespace sim
