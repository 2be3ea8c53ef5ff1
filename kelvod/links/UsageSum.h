#pragma once

#include <cstdint>
#include <limits>

namespace kelvo {

/** Sums the usage records of one module to its average power. Pure; 64-bit overflow wraps. */
class UsageSum {
  public:
    /** Counts a record with an energy of at least 1; `start` and `end` are -1 when it has none. */
    void add(int64_t start, int64_t end, int64_t energy);

    int64_t energySum() const { return mEnergySum; }
    /** From the earliest start to the latest end; below 1 when no record was counted. */
    int64_t span() const;
    /** energySum × 3.6 / span toward zero, -1 without energy or span. */
    int32_t power() const;

  private:
    int64_t mEnergySum = 0;
    int64_t mMinStart = std::numeric_limits<int64_t>::max();
    int64_t mMaxEnd = -1;
};

}  // namespace kelvo
