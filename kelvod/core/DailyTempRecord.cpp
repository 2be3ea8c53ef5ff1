#include "core/DailyTempRecord.h"

#include <algorithm>

#include "base/Numeric.h"

namespace kelvo {

void TempHistogram::add(int32_t temp) {
    mMin = std::min(mMin, temp);
    mMax = std::max(mMax, temp);
    const int32_t degrees = saturatingInt32(temp * 0.001);
    ++mCounts[static_cast<size_t>(std::clamp(degrees - mBase, 0, kCounters - 1))];
}

void TempHistogram::write(Json::Value& out, const std::string& prefix) const {
    for (int32_t i = 0; i < kCounters; ++i) {
        out[prefix + std::to_string(mBase + i)] = mCounts[static_cast<size_t>(i)];
    }
}

void DailyTempRecord::write(Json::Value& out) const {
    out["min"] = shell.min();
    out["max"] = shell.max();
    out["min-b"] = board.min();
    out["max-b"] = board.max();
    out["time"] = time;
    out["duration"] = wrappingSub(lastSample, startTime);
    shell.write(out, "s");
    board.write(out, "b");
}

}  // namespace kelvo
