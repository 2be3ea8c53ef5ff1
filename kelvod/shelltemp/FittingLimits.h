#pragma once

#include <cstdint>
#include <vector>

namespace kelvo {

/** Changes per second (absolute, m°C/s) of one model, oldest first. */
using DeltaHistory = std::vector<int32_t>;

/** Whether a value (m°C) lies so far above the reference model that it is capped to it. */
bool exceedsReference(int32_t value, int32_t reference);

/** What the limiting of one value came to. */
struct LimitedValue {
    int32_t value;     // m°C, the fitted value or what it was limited to
    int32_t rate;      // m°C/s, of the fitted value against the cycle before
    int32_t limit;     // m°C/s with the sign of the rate; 0 when the value stands
    bool limited;      // the fitted value moved faster than a shell can
    int32_t recorded;  // m°C/s, absolute: what belongs into the history
};

/**
 * Limits a jump from `previous` to `value` (m°C) within `seconds` (at least 1): faster than half a
 * degree a second is taken as a shaking zone, and the value may move on at twice the fastest change
 * of the history, at 125 m°C/s if the shell was steady, at 500 m°C/s at most.
 */
LimitedValue limitJump(int32_t previous, int32_t value, int32_t seconds,
                       const DeltaHistory& history);

/** Appends a change to a history, which keeps the last five. */
void recordDelta(DeltaHistory& history, int32_t delta);

}  // namespace kelvo
