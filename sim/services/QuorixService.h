#pragma once

#include <memory>

#include "sim/services/PhoneService.h"

namespace sim {

/**
 * The usage-statistics engine: takes the daemon's callback and events, and sends it a report for
 * each action that makes one. Before the daemon has registered a report goes nowhere.
 */
class QuorixService : public PhoneService {
  public:
    explicit QuorixService(const ServiceContext& context);
    ~QuorixService() override;

    void perform(const Deed& deed) override;

  private:
    struct Parts;
    const std::unique_ptr<Parts> mParts;
};

}  // namespace sim
