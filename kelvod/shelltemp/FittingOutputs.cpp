#include "shelltemp/FittingOutputs.h"

#include <algorithm>

#include "base/Log.h"
#include "base/Numeric.h"

namespace kelvo {

namespace {

constexpr int32_t kReferenceIndex = -1;
constexpr int32_t kInnerHighTemp = 47999;   // m°C, up to here the inner area is corrected
constexpr int32_t kInnerCorrection = 2000;  // m°C
constexpr int32_t kScreenGuardSeconds = 5;  // no smoothing right after "SCREEN:ON"

}  // namespace

void FittingOutputs::beginCycle() {
    mLastTemps.swap(mTemps);
    mLastTime = mTime;
    mTemps.clear();
}

void FittingOutputs::set(int32_t index, int32_t temp, int32_t now) {
    mTemps[index] = temp;
    mTime = now;
}

void FittingOutputs::specialHandlingInnerTemp(int32_t index, PassRecord& record) {
    int32_t& temp = mTemps[index];
    if (temp <= kInnerHighTemp) {
        KLOGD("do special handling, inner area origin temp:%d", temp);
        temp = wrappingSub(temp, kInnerCorrection);
        record.correct(temp);
    }
}

void FittingOutputs::endCycle() {
    if (mLastTemps.empty()) {
        mLastTemps = mTemps;
        mLastTime = mTime;
    }
}

void FittingOutputs::limit(int32_t screenOnTime, PassRecord& record) {
    record.beginOutputs(mTemps);
    capToReference(record);
    if (!screenJustTurnedOn(screenOnTime)) {
        limitJumps(record);
    }
}

void FittingOutputs::capToReference(PassRecord& record) {
    const auto reference = mTemps.find(kReferenceIndex);
    if (reference == mTemps.end()) {
        return;
    }
    for (auto& [index, temp] : mTemps) {
        if (index >= 0 && exceedsReference(temp, reference->second)) {
            KLOGE("index:%d, temp:%d", index, temp);
            temp = reference->second;
            record.cap(index, temp);
        }
    }
}

bool FittingOutputs::screenJustTurnedOn(int32_t screenOnTime) const {
    if (wrappingSub(mTime, screenOnTime) > kScreenGuardSeconds) {
        return false;
    }
    KLOGD("screen just turned on, ignore check %d:%d", mTime, screenOnTime);
    return true;
}

void FittingOutputs::limitJumps(PassRecord& record) {
    const int32_t seconds = std::max(wrappingSub(mTime, mLastTime), 1);
    for (auto& [index, temp] : mTemps) {
        if (index < 0) {
            continue;
        }
        // A value that the cycle before lacks is limited as a rise from 0, so it creeps up.
        const auto last = mLastTemps.find(index);
        const int32_t previous = last == mLastTemps.end() ? 0 : last->second;
        DeltaHistory& history = mDeltaHistory[index];
        const LimitedValue result = limitJump(previous, temp, seconds, history);
        if (result.limited) {
            KLOGD("Shell temp was shaking %d: delta %d (%d->%d), smoothed %d (%d->%d)", index,
                  result.rate, previous, temp, result.limit, temp, result.value);
        }
        record.limit(index, previous, seconds, result);
        temp = result.value;
        recordDelta(history, result.recorded);
    }
}

}  // namespace kelvo
