#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "ambient/AmbientParams.h"

namespace kelvo {

/** One round: what the ambient models and the battery said. */
struct RsrpCurrent {
    int32_t temp = 0;            // m°C
    int32_t power = 0;           // as the model "power" gives it, battery correction included
    int32_t batteryCurrent = 0;  // mA, below 0 while charging
};

/** The latest twelve rounds. Sums wrap in 32 bits. Not thread-safe. */
class AmbientSamples {
  public:
    static constexpr int32_t kCount = 12;
    static constexpr int32_t kHalf = kCount / 2;

    void add(const RsrpCurrent& sample);
    void clear();
    bool full() const { return mFull; }

    /**
     * Mean charging current (mA): eleven slots summed, divided by minus twelve; the last slot does
     * not count.
     */
    int32_t chargeMean() const;
    /** A sixth of what the power of the newest six rounds is above that of the six before. */
    int32_t powerDiff() const;

    /** A round of the newer half, beside the one six rounds older. */
    struct Pair {
        int32_t slot = 0;
        bool wrapped = false;  // it stands behind the newest in the ring
        double slope = 0;      // m°C/s at the default cadence
        RsrpCurrent newer;
    };
    /** From the newest round back. Only when full. */
    std::array<Pair, kHalf> pairs() const;

  private:
    std::array<RsrpCurrent, kCount> mSlots{};
    int32_t mCurrentPos = -1;  // of the newest round, -1 while empty
    bool mFull = false;
};

/** What the rounds with a steady temperature add up to. */
struct SteadySums {
    int32_t temp = 0;
    int32_t power = 0;
    int32_t slope = 0;  // cut to a whole number after each addition
    int32_t count = 0;

    void add(const AmbientSamples::Pair& pair);
};

/** The ambient temperature (°C) that the parameters make of these sums; `sums.count` above 0. */
int32_t ambientOf(const SteadySums& sums, const AmbientParams& params);

/** Gathers twelve estimates into one. Not thread-safe. */
class EstimateWindow {
  public:
    static constexpr int32_t kCount = 12;

    /** Whether no estimate has been added since the start, a clear or the latest result. */
    bool empty() const { return mCount == 0; }
    /** With the twelfth estimate: the mean of those between the smallest and the largest. */
    std::optional<int32_t> add(int32_t estimate);
    void clear() { mCount = 0; }

  private:
    int32_t mMax = 0;
    int32_t mMin = 0;
    int32_t mSum = 0;
    int32_t mCount = 0;
};

}  // namespace kelvo
