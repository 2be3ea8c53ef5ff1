#pragma once

#include <utils/Mutex.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "heat/ComponentHeat.h"
#include "heat/HeatTables.h"

/**
 * Heat of the graphics processor, from its load and clock and a table of currents. Samples are mA.
 * An unreadable node counts as -1. Thread-safe.
 */
class GpuCompHeat : public virtual ComponentHeat {
  public:
    GpuCompHeat();

    int processRawSample() override;
    /** Also starts the averages of the next report anew. */
    int getHeatContribution() override;
    /** Key factors: "agvload" (%), "agvfreq" (clock) since the last query, and "Power" (mA). */
    std::shared_ptr<HeatInfo> getHeatInfo() override;

  private:
    void initConfig();
    void takeTable(kelvo::HeatTable<kelvo::GpuCurrent> table) REQUIRES(mLock);
    static int getGpuLoad();
    static int getGpuFreq();
    float coefficient() REQUIRES(mLock);
    void takeAverages(std::map<std::string, int>& out) REQUIRES(mLock);

    // Guards the members below; taken before the buffer's lock, and the configuration's at
    // construction.
    android::Mutex mLock;
    std::vector<kelvo::GpuCurrent> mTable GUARDED_BY(mLock);  // ascending by gpufreq
    float mCoefficient GUARDED_BY(mLock) = 0.0F;              // 0.0 until the center was asked
    // Since the last query.
    float mLoadSum GUARDED_BY(mLock) = 0.0F;
    float mFreqSum GUARDED_BY(mLock) = 0.0F;
    int32_t mCount GUARDED_BY(mLock) = 0;
};
