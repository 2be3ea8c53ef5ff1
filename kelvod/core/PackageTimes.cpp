#include "core/PackageTimes.h"

#include "base/Numeric.h"
#include "base/Time.h"

namespace kelvo {

namespace {

constexpr int64_t kSecondsPerHour = 3600;

}  // namespace

void PackageTimes::setForeground(const std::string& package, int64_t now) {
    mForeground = package;
    mSwitchTime = now;
}

void PackageTimes::record(int64_t now, std::optional<int32_t> current) {
    const int64_t seconds = (now - mLastRecord) / kNanosPerSecond;
    mSeconds[mTimed] += seconds;
    if (current && !mTimed.empty()) {
        const auto charge = static_cast<int32_t>(*current * seconds / kSecondsPerHour);
        int32_t& sum = mCharges[mTimed];
        sum = wrappingAdd(sum, charge);
    }
    mLastRecord = now;
    mTimed = mForeground;
}

int64_t PackageTimes::secondsOf(const std::string& package) const {
    const auto found = mSeconds.find(package);
    return found != mSeconds.end() ? found->second : -1;
}

void PackageTimes::clear() {
    mSeconds.clear();
    mCharges.clear();
}

}  // namespace kelvo
