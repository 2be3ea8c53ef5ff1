#include "shelltemp/FittingLimits.h"

#include <algorithm>

#include "base/Numeric.h"

namespace kelvo {

namespace {

constexpr int32_t kReferenceMargin = 20000;  // m°C above the reference that are still believed
constexpr int32_t kShakingRate = 501;        // m°C/s
constexpr int32_t kSteadyLimit = 125;        // m°C/s
constexpr int32_t kHighestLimit = 500;       // m°C/s
constexpr size_t kHistoryLength = 5;

}  // namespace

bool exceedsReference(int32_t value, int32_t reference) {
    return wrappingSub(value, reference) > kReferenceMargin;
}

LimitedValue limitJump(int32_t previous, int32_t value, int32_t seconds,
                       const DeltaHistory& history) {
    const int32_t rate = wrappingSub(value, previous) / seconds;
    const int32_t speed = rate < 0 ? wrappingSub(0, rate) : rate;
    if (speed < kShakingRate) {
        return {value, rate, 0, false, speed};
    }
    const int32_t fastest = history.empty() ? 0 : *std::ranges::max_element(history);
    const int32_t limit = std::clamp(wrappingMul(2, fastest), kSteadyLimit, kHighestLimit);
    const int32_t step = wrappingMul(limit, seconds);
    return rate > 0 ? LimitedValue{wrappingAdd(previous, step), rate, limit, true, limit}
                    : LimitedValue{wrappingSub(previous, step), rate, -limit, true, limit};
}

void recordDelta(DeltaHistory& history, int32_t delta) {
    history.push_back(delta);
    if (history.size() > kHistoryLength) {
        history.erase(history.begin());
    }
}

}  // namespace kelvo
