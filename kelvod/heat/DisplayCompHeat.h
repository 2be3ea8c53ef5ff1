#pragma once

#include <memory>

#include "heat/ComponentHeat.h"

/**
 * Heat of the display, from the usage feed's figure or else from the DisplayModel. Samples are mW.
 * Thread-safe as long as queries come one at a time.
 */
class DisplayCompHeat : public virtual ComponentHeat {
  public:
    DisplayCompHeat() : ComponentHeat(DISPLAY) {}
    int processRawSample() override;
    int getHeatContribution() override;
    std::shared_ptr<HeatInfo> getHeatInfo() override;
    std::shared_ptr<HeatInfo> getOwnHeatInfo() override;
    void askForFactors(HeatInfo& info) override;

  private:
    int convert();

    // Queries alone, which the center's component lock serialises; 0.0 until the center was asked.
    float mCoefficient = 0.0F;
};
