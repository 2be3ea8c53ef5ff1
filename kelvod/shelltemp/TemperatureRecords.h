#pragma once

#include <json/value.h>

#include <cstdint>
#include <map>
#include <string>

#include "shelltemp/FittingModel.h"
#include "shelltemp/ZoneTable.h"
#include "shelltemp/ZoneTemps.h"

namespace kelvo {

/** What one zone went through in a day; the stamps say when each extreme came. */
struct TempData {
    int32_t min = 0;  // m°C
    int32_t max = 0;  // m°C
    std::string minTime;
    std::string maxTime;
};

/** Largest change of a model between two consecutive cycles, with its sign (m°C). */
struct FittingTempDeltaData {
    int32_t delta = 0;
    std::string time;
};

/** The day's temperature records. Not thread-safe; the caller serialises. */
class TemperatureRecords {
  public:
    /** Adds one cycle; a model without a value in the cycle before has made no change. */
    void record(const ZoneTemps& zoneTemps, const FittingTemps& fitted,
                const FittingTemps& previous);
    bool empty() const { return mZones.empty() && mDeltas.empty(); }
    void clear();

    /** {zone: {"min": {"temp","time"}, "max": {…}}}, by type or, for want of one, by number. */
    Json::Value zonesAsJson(const ZoneTable& table) const;
    /** {model: {"delta","time"}}, by name. */
    Json::Value deltasAsJson(const ModelNames& names) const;

  private:
    void recordZone(int32_t index, int32_t temp);
    void recordDelta(int32_t index, int32_t delta);

    std::map<int32_t, TempData> mZones;               // by zone index
    std::map<int32_t, FittingTempDeltaData> mDeltas;  // by model index
};

}  // namespace kelvo
