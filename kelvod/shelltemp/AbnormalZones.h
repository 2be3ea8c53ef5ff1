#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "shelltemp/ThermalZone.h"

namespace kelvo {

/**
 * Record of a zone that failed at least once. The daemon decides by `failCount` alone; the rest is
 * for whoever takes a core dump of a phone with a bad zone.
 */
struct AbnormalTZoneData {
    int32_t state = 0;       // ZoneState of the last failure
    int32_t temp = 0;        // value held at the last failure, m°C
    int32_t failCount = 0;   // consecutive failures
    int32_t totalCount = 0;  // failures ever recorded
    std::string firstTime;   // time stamp of the first failure
    std::string lastTime;    // time stamp of the latest failure
    int32_t tzIndex = 0;
    std::string tzName;
};

/**
 * Which zones misbehave, and for how long. A zone that fails more than `limit` times in a row joins
 * the bad zones, for which models with that zone are given up. Not thread-safe; the caller
 * serialises.
 */
class AbnormalZones {
  public:
    static constexpr int32_t kDefaultLimit = 60;  // failures in a row

    void setLimit(int32_t limit) { mLimit = limit; }

    /** A good reading: the count of consecutive failures starts anew. */
    void recordGood(const ThermalZone& zone);
    /** A failed one; one of a HAL service never counts against the zone. */
    void recordAbnTZone(const ThermalZone& zone, int32_t temp, ZoneState state);

    /** In order of joining; a zone is listed again when failures of several zones interleave. */
    const std::vector<int32_t>& badZones() const { return mBadZones; }
    /** Set when a zone joins the bad zones; stays until somebody has acted on it. */
    bool badZonesChanged() const { return mBadZonesChanged; }
    void clearBadZonesChanged() { mBadZonesChanged = false; }

    /** What is recorded, by zone index; under -1 the latest zone of a HAL service that failed. */
    const std::map<int32_t, AbnormalTZoneData>& records() const { return mZones; }

    /** Forgets all zones; the limit stays. */
    void clear();

  private:
    std::map<int32_t, AbnormalTZoneData> mZones;  // by zone index; -1 for HAL services
    std::vector<int32_t> mBadZones;
    bool mBadZonesChanged = false;
    int32_t mLimit = kDefaultLimit;
};

}  // namespace kelvo
