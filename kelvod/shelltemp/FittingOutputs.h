#pragma once

#include <cstdint>
#include <map>

#include "shelltemp/FittingLimits.h"
#include "shelltemp/FittingModel.h"
#include "shelltemp/PassRecord.h"

namespace kelvo {

/**
 * The values of a cycle from fitted to published: set as the models fit them, then capped to the
 * reference and limited against the cycle before. Times are monotonic seconds. Not thread-safe; the
 * caller serialises.
 */
class FittingOutputs {
  public:
    /** A new cycle without values; the present one becomes the cycle before. */
    void beginCycle();
    void set(int32_t index, int32_t temp, int32_t now);
    /** Lowers the value of the inner area, below a temperature from which on it is believed. */
    void specialHandlingInnerTemp(int32_t index, PassRecord& record);
    /** All values are set; the first cycle counts as its own cycle before. */
    void endCycle();
    /** Caps, and limits jumps unless the screen has just turned on. */
    void limit(int32_t screenOnTime, PassRecord& record);

    const FittingTemps& temps() const { return mTemps; }
    const FittingTemps& lastTemps() const { return mLastTemps; }

  private:
    void capToReference(PassRecord& record);
    bool screenJustTurnedOn(int32_t screenOnTime) const;
    void limitJumps(PassRecord& record);

    FittingTemps mTemps;
    FittingTemps mLastTemps;  // of the cycle before
    int32_t mTime = 0;        // of the latest value
    int32_t mLastTime = 0;
    std::map<int32_t, DeltaHistory> mDeltaHistory;  // by model index
};

}  // namespace kelvo
