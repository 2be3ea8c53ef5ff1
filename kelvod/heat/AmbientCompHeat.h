#pragma once

#include <utils/Mutex.h>

#include <cstdint>
#include <limits>
#include <memory>

#include "heat/ComponentHeat.h"

/**
 * How much warmer or colder the air has become (m°C), so that warm surroundings can outrank the
 * phone's own components. Needs no coefficient. Thread-safe.
 *
 * Lock order: this component's mutex, then the sample buffer's.
 */
class AmbientCompHeat : public virtual ComponentHeat {
  public:
    AmbientCompHeat() : ComponentHeat(AMBIENT) {}
    int processRawSample() override;
    /** The change of the last 300 s, as far as it came after the previous call. */
    int getHeatContribution() override;
    /** The same, without becoming the previous call. */
    std::shared_ptr<HeatInfo> getHeatInfo() override;
    std::shared_ptr<HeatInfo> getOwnHeatInfo() override;
    void askForFactors(HeatInfo& info) override;

  private:
    android::Mutex mMutex;
    // Monotonic s of the last getHeatContribution(); at first the whole window counts.
    int32_t mLastQuerySecond GUARDED_BY(mMutex) = std::numeric_limits<int32_t>::min();
};
