#pragma once

#include "sim/services/PhoneService.h"
#include "sim/services/PublishedBinder.h"

namespace sim {

/** The display compositor, as far as it answers its frame counter. */
class FramesService : public PhoneService {
  public:
    explicit FramesService(const ServiceContext& context);

  private:
    const PublishedBinder mPublished;
};

}  // namespace sim
