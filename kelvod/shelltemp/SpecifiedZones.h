#pragma once

#include <utils/Mutex.h>

#include <cstdint>
#include <vector>

#include "shelltemp/ThermalZone.h"
#include "shelltemp/ZoneTable.h"

namespace kelvo {

/**
 * The zones whose temperatures clients may ask for; they are read at most once in 20 seconds.
 * Thread-safe: clients ask on binder threads.
 */
class SpecifiedZones {
  public:
    /** Appends the listed zones; one unknown zone disables the whole list. */
    void configure(const ZoneList& list);
    void clear();
    /**
     * Temperatures (m°C) in the order of the configuration, into a vector that is empty on entry.
     * 0, or -1 when no zone is configured or one cannot be read; `temps` then holds what was read.
     */
    int getTemps(std::vector<int>& temps);

  private:
    int refreshLocked(std::vector<int>& temps, int32_t now) REQUIRES(mMutex);

    // Guards everything below, also while zones are read; only a singleton's creation is locked
    // inside it.
    android::Mutex mMutex;
    std::vector<ThermalZone> mZones GUARDED_BY(mMutex);
    std::vector<int> mCache GUARDED_BY(mMutex);  // m°C
    int32_t mCacheTime GUARDED_BY(mMutex) = -1;  // wall clock, s
};

}  // namespace kelvo
