#pragma once

#include <atomic>
#include <memory>

#include "heat/ComponentHeat.h"

/**
 * Heat of the display, from the usage feed's figure or else from the DisplayModel. Samples are mW.
 * Thread-safe.
 */
class DisplayCompHeat : public virtual ComponentHeat {
  public:
    int processRawSample() override;
    int getHeatContribution() override;
    std::shared_ptr<HeatInfo> getHeatInfo() override;

  private:
    std::atomic<float> mCoefficient = 0.0F;  // 0.0 until the center was asked
};
