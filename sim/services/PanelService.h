#pragma once

#include "sim/services/PhoneService.h"
#include "sim/services/PublishedBinder.h"

namespace sim {

/** The vendor's display-panel HAL: answers the backlight level and its maximum. */
class PanelService : public PhoneService {
  public:
    explicit PanelService(const ServiceContext& context);

  private:
    const PublishedHidl mPublished;
};

}  // namespace sim
