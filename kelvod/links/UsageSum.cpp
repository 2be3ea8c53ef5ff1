#include "links/UsageSum.h"

#include <algorithm>

#include "base/Numeric.h"

namespace kelvo {

namespace {

constexpr double kPowerPerEnergyRate = 3.6;  // the engine's energy a ms → mW
constexpr int32_t kNoPower = -1;

}  // namespace

void UsageSum::add(int64_t start, int64_t end, int64_t energy) {
    if (energy < 1) {
        return;
    }
    mEnergySum =
            static_cast<int64_t>(static_cast<uint64_t>(mEnergySum) + static_cast<uint64_t>(energy));
    mMinStart = std::min(mMinStart, start);
    mMaxEnd = std::max(mMaxEnd, end);
}

int64_t UsageSum::span() const {
    return static_cast<int64_t>(static_cast<uint64_t>(mMaxEnd) - static_cast<uint64_t>(mMinStart));
}

int32_t UsageSum::power() const {
    const int64_t length = span();
    if (length < 1 || mEnergySum <= 0) {
        return kNoPower;
    }
    return saturatingInt32(static_cast<double>(mEnergySum) * kPowerPerEnergyRate /
                           static_cast<double>(length));
}

}  // namespace kelvo
