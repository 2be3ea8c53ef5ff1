#pragma once

#include <json/value.h>

#include <cstdint>
#include <string>

#include "shelltemp/FittingModel.h"
#include "shelltemp/TemperatureRecords.h"
#include "shelltemp/ZoneTable.h"
#include "shelltemp/ZoneTemps.h"

namespace kelvo {

/**
 * The temperature records of a local day: since when they run, and when they are due as big data.
 * Not thread-safe; the caller serialises.
 */
class DailyRecords {
  public:
    /** Begins empty records of `day`, from now on. */
    void start(const std::string& day);
    /** The local day of the records. */
    const std::string& day() const { return mDay; }
    void recordTempData(const ZoneTemps& zoneTemps, const FittingTemps& fitted,
                        const FittingTemps& previous) {
        mRecords.record(zoneTemps, fitted, previous);
    }
    /**
     * Whether a whole number of hours has passed since the start. On the exact second only: a cycle
     * that does not land on it skips the hour.
     */
    bool hourIsFull() const;
    /**
     * Hands the records to the big-data collector together with the members of `frame`; nothing
     * when there are none.
     */
    void handOver(Json::Value frame, const ZoneTable& zones, const ModelNames& models) const;

  private:
    TemperatureRecords mRecords;
    std::string mDay;
    std::string mStartStamp;
    int64_t mStartTime = 0;  // monotonic, ns
};

}  // namespace kelvo
