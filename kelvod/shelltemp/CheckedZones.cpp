#include "shelltemp/CheckedZones.h"

#include <set>

#include "base/Log.h"
#include "shelltemp/ZoneReader.h"

namespace kelvo {

int CheckedZones::getCycleTemp(const ThermalZone& zone, int32_t& temp) {
    if (const int32_t* const known = mTemps.find(zone.index)) {
        temp = *known;
        return 0;
    }
    if (getAndCheckTemp(zone, temp) != 0) {
        return -1;
    }
    mTemps.add(zone.index, temp);
    return 0;
}

int CheckedZones::getAndCheckTemp(const ThermalZone& zone, int32_t& temp) {
    const ZoneState state = readZone(zone, temp);
    if (state == ZoneState::GOOD) {
        mAbnormal.recordGood(zone);
        return 0;
    }
    mAbnormal.recordAbnTZone(zone, temp, state);
    KLOGD("Recording abnormal tz:%d state:%d.", zone.index, static_cast<int32_t>(state));
    return -1;
}

void CheckedZones::readTempForFirstTime(const TempFittingModel& set) {
    std::set<int32_t> seen;
    for (const FittingModel& model : set.models) {
        for (const ThermalZone& zone : model.zones) {
            int32_t temp = 0;
            if (seen.insert(zone.index).second && getAndCheckTemp(zone, temp) != 0) {
                KLOGE("Get temp(tz:%d) failed in readTempForFirstTime.!", zone.index);
            }
        }
    }
}

}  // namespace kelvo
