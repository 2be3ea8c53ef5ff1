#pragma once

#include <utils/Mutex.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "shelltemp/ThermalZone.h"
#include "shelltemp/TsensorHistogram.h"
#include "shelltemp/ZoneTable.h"

namespace kelvo {

/** Daily histograms of the tsensor zones for the big data, sampled once a second. Thread-safe. */
class TsensorCollector {
  public:
    /**
     * Switches the collection on and appends the listed zones with counters at 0; one unknown zone
     * leaves no zone at all. A zone listed again is sampled once more each second.
     */
    void configure(const ZoneList& list);
    bool enabled() const;
    /** Samples every zone once. 0, or -1 at the first zone that cannot be read. */
    int getTsensorTemps();
    /** Hands the counters to the big-data collector when the local day has changed, once. */
    void getTsensorDataCollect();

  private:
    bool countLocked(const ThermalZone& zone, int32_t temp) REQUIRES(mMutex);

    // Guards everything below; the data collector's and a singleton's creation come inside it.
    mutable android::Mutex mMutex;
    bool mEnabled GUARDED_BY(mMutex) = false;
    std::vector<ThermalZone> mZones GUARDED_BY(mMutex);
    // By zone type; kTsensorBands counters each.
    std::map<std::string, std::vector<int32_t>> mCounts GUARDED_BY(mMutex);
    std::map<std::string, std::vector<int32_t>> mTimes GUARDED_BY(mMutex);
    std::map<std::string, TsensorState> mStates GUARDED_BY(mMutex);
    std::string mDay GUARDED_BY(mMutex);  // local day of the counters
};

}  // namespace kelvo
