#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "heat/PowerTable.h"
#include "heat/TaskStats.h"

namespace kelvo {

/**
 * Which threads use the processor most, and which of them stay at it for so long that something may
 * be wrong with them. A period of observation lasts from one ranking to the next. Not thread-safe;
 * the caller serialises. Times are monotonic seconds.
 */
class TopThreads {
  public:
    /** The first period begins. */
    void startPeriod(int32_t now) { mPeriodStart = now; }
    /** Takes the threads of one reading. */
    void add(const std::vector<PidTidPower>& threads);

    /**
     * Ranks the threads of the period and begins the next. `coefficient` is the processor's mW per
     * m°C. 0, or -1 when there was nothing to rank; the period then goes on.
     */
    int getTopKeepPowerTid(int32_t now, float coefficient);

    /** The top threads of the last ranking by their share, the largest first. */
    std::vector<PidTidPower> byShare() const;

    /** Threads that were at the top too long, by "PID_TID". */
    const std::map<std::string, PidTidPower>& exceptThreads() const { return mExceptThreads; }
    void clearExceptThreads() { mExceptThreads.clear(); }

  private:
    void getTopCpuPower(int32_t now, std::set<int>& powers, std::map<int, PidTidPower>& top);
    void shareOf(PidTidPower& thread, float coefficient) const;
    void accumulate(PidTidPower& thread);

    PowerTable<PidTidPower> mThreadTable;           // by tid; of the period, latest reading
    PowerTable<int64_t> mPidPower;                  // by pid; sum over the period
    std::map<int32_t, PidTidPower> mLongKeepTable;  // by tid; top of the period before
    std::map<std::string, PidTidPower> mExceptThreads;
    int32_t mPeriodStart = -1;
    int32_t mSampleCount = 0;  // readings in the period
};

}  // namespace kelvo
