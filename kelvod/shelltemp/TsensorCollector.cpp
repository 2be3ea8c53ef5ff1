#include "shelltemp/TsensorCollector.h"

#include <json/value.h>

#include <optional>

#include "base/Log.h"
#include "base/TimeUtils.h"
#include "core/DataCollector.h"
#include "shelltemp/ZoneReader.h"

namespace kelvo {

namespace {

Json::Value toJson(const std::vector<int32_t>& counters) {
    Json::Value array(Json::arrayValue);
    for (const int32_t counter : counters) {
        array.append(counter);
    }
    return array;
}

}  // namespace

void TsensorCollector::configure(const ZoneList& list) {
    android::Mutex::Autolock lock(mMutex);
    mEnabled = true;
    for (const ThermalZone& zone : list.zones) {
        mCounts[zone.name].assign(kTsensorBands, 0);
        mTimes[zone.name].assign(kTsensorBands, 0);
        mStates[zone.name] = {};
        mZones.push_back(zone);
    }
    if (list.unknownType) {
        KLOGE("can not find tz: %s", list.unknownType->c_str());
        mZones.clear();
    }
    mDay = getLocalDay();
}

bool TsensorCollector::enabled() const {
    android::Mutex::Autolock lock(mMutex);
    return mEnabled;
}

int TsensorCollector::getTsensorTemps() {
    android::Mutex::Autolock lock(mMutex);
    if (mZones.empty()) {
        KLOGE("specified Tz is empty!");  // the text is shared with the specified zones
        return -1;
    }
    for (const ThermalZone& zone : mZones) {
        int32_t temp = -1;
        const ZoneState state = readZone(zone, temp);
        if (state != ZoneState::GOOD) {
            KLOGE("Recording abnormal tz:%d state:%d.", zone.index, static_cast<int>(state));
            return -1;
        }
        if (!countLocked(zone, temp)) {
            break;
        }
    }
    return 0;
}

bool TsensorCollector::countLocked(const ThermalZone& zone, int32_t temp) {
    std::vector<int32_t>& counts = mCounts[zone.name];
    std::vector<int32_t>& times = mTimes[zone.name];
    if (counts.empty() || times.empty()) {
        KLOGE("countsList or timesList may be empty!");
        return false;
    }
    const std::optional<TsensorEpisodeEnd> end =
            countTsensorSample(temp, mStates[zone.name], counts, times);
    if (end) {
        KLOGD("[%s] loop end, index:%d, indexMax:%d", zone.name.c_str(), end->timesIndex,
              end->countsIndex);
    }
    return true;
}

void TsensorCollector::getTsensorDataCollect() {
    android::Mutex::Autolock lock(mMutex);
    const std::string today = getLocalDay();
    if (today == mDay) {
        return;
    }
    KLOGD("Collect tsensor big data.");
    Json::Value record(Json::objectValue);
    record["localDay"] = mDay;
    for (auto& [type, counts] : mCounts) {
        record[type + "_c"] = toJson(counts);
        counts.assign(kTsensorBands, 0);
    }
    for (auto& [type, times] : mTimes) {
        record[type + "_t"] = toJson(times);
        times.assign(kTsensorBands, 0);
    }
    DataCollector::getInstance().setData(DC_TSENSOR_THERMAL, mDay, record);
    mDay = today;
}

}  // namespace kelvo
