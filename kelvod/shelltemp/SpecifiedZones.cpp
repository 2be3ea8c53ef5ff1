#include "shelltemp/SpecifiedZones.h"

#include "base/Log.h"
#include "base/Numeric.h"
#include "base/Time.h"
#include "shelltemp/ZoneReader.h"

namespace kelvo {

namespace {

constexpr int32_t kCacheSeconds = 19;  // a value is read again when it is older

}  // namespace

void SpecifiedZones::configure(const ZoneList& list) {
    android::Mutex::Autolock lock(mMutex);
    for (const ThermalZone& zone : list.zones) {
        KLOGD("specifiedTz: %s, index:%d", zone.name.c_str(), zone.index);
        mZones.push_back(zone);
    }
    if (list.unknownType) {
        KLOGD("can not find tz: %s", list.unknownType->c_str());
        mZones.clear();
    }
}

void SpecifiedZones::clear() {
    android::Mutex::Autolock lock(mMutex);
    mZones.clear();
}

int SpecifiedZones::getTemps(std::vector<int>& temps) {
    android::Mutex::Autolock lock(mMutex);
    if (mZones.empty()) {
        KLOGD("specified Tz is empty!");
        return -1;
    }
    const auto now = static_cast<int32_t>(wallClockSeconds());
    if (wrappingSub(now, mCacheTime) > kCacheSeconds) {
        return refreshLocked(temps, now);
    }
    temps = mCache;
    return 0;
}

int SpecifiedZones::refreshLocked(std::vector<int>& temps, int32_t now) {
    for (const ThermalZone& zone : mZones) {
        int32_t temp = -1;
        const ZoneState state = readZone(zone, temp);
        if (state != ZoneState::GOOD) {
            KLOGD("Recording abnormal tz:%d state:%d.", zone.index, static_cast<int>(state));
            return -1;
        }
        KLOGD("specifiedTz: %s, index:%d, temp:%d", zone.name.c_str(), zone.index, temp);
        temps.push_back(temp);
    }
    mCache = temps;
    mCacheTime = now;
    return 0;
}

}  // namespace kelvo
