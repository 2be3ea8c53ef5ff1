#pragma once

#include <cstdint>

#include "shelltemp/AbnormalZones.h"
#include "shelltemp/FittingModel.h"
#include "shelltemp/ThermalZone.h"
#include "shelltemp/ZoneTemps.h"

namespace kelvo {

/**
 * Reads zones for models, keeps book of those that misbehave, and remembers for a cycle what it has
 * read, so that all models of the cycle see one temperature. Not thread-safe; the caller
 * serialises.
 */
class CheckedZones {
  public:
    /** Forgets the temperatures of the cycle before. */
    void beginCycle() { mTemps.clear(); }
    /** Temperature (m°C) of a zone in this cycle, read when it is not known. 0, or -1. */
    int getCycleTemp(const ThermalZone& zone, int32_t& temp);
    /** Temperatures (m°C) of this cycle. */
    const ZoneTemps& temps() const { return mTemps; }

    /** Reads a zone (m°C). 0, or -1 when it is abnormal, which is recorded. */
    int getAndCheckTemp(const ThermalZone& zone, int32_t& temp);
    /** Reads each zone of a set once, to find the abnormal ones before the first cycle. */
    void readTempForFirstTime(const TempFittingModel& set);

    AbnormalZones& abnormal() { return mAbnormal; }

  private:
    AbnormalZones mAbnormal;
    ZoneTemps mTemps;
};

}  // namespace kelvo
