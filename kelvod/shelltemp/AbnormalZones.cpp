#include "shelltemp/AbnormalZones.h"

#include "base/Log.h"
#include "base/TimeUtils.h"

namespace kelvo {

namespace {

constexpr int32_t kHalServiceKey = -1;

}  // namespace

void AbnormalZones::recordGood(const ThermalZone& zone) {
    const auto found = mZones.find(zone.index);
    if (found != mZones.end() && found->second.failCount != 0) {
        found->second.failCount = 0;
        KLOGI("The tzone %d has been restored.", zone.index);
    }
}

void AbnormalZones::recordAbnTZone(const ThermalZone& zone, int32_t temp, ZoneState state) {
    const std::string now = getTimestamp();
    const bool halFailed = state == ZoneState::HAL_FAILED;
    AbnormalTZoneData& data = mZones[halFailed ? kHalServiceKey : zone.index];
    data.state = static_cast<int32_t>(state);
    data.temp = temp;
    ++data.totalCount;
    if (data.firstTime.empty()) {
        data.firstTime = now;
    }
    data.lastTime = now;
    data.tzIndex = zone.index;
    data.tzName = zone.name;
    if (halFailed) {
        KLOGE("Get hal service failed(state:%d), not tzone exception.", data.state);
        return;
    }
    ++data.failCount;
    // Only the last entry is compared: zones that fail in turn are listed again each time, which
    // whoever reads the list copes with.
    const bool listed = !mBadZones.empty() && mBadZones.back() == zone.index;
    if (data.failCount > mLimit && !listed) {
        mBadZones.push_back(zone.index);
        mBadZonesChanged = true;
        KLOGE("Get temp(tz:%d) still failed! add list(size:%lu)", zone.index, mBadZones.size());
    }
}

void AbnormalZones::clear() {
    mZones.clear();
    mBadZones.clear();
    mBadZonesChanged = false;
}

}  // namespace kelvo
