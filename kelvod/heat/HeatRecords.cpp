#include "heat/HeatRecords.h"

#include "base/Log.h"
#include "base/Numeric.h"

namespace kelvo {

namespace {

int32_t heatOf(const std::map<int32_t, int32_t>& heats, int32_t type) {
    const auto found = heats.find(type);
    return found != heats.end() ? found->second : 0;
}

}  // namespace

void updateCompRawData(const std::string& key, HeatRecords& records,
                       const std::map<int32_t, int32_t>& heats, int32_t level, size_t maxRecords) {
    if (key.empty()) {
        return;
    }
    const auto found = records.find(key);
    const bool isNew = found == records.end();
    // "More than": a store holds one record beyond its number.
    if (isNew && records.size() > maxRecords) {
        return;
    }
    HeatRawRecord& record = isNew ? records[key] : found->second;
    for (int32_t type = 0; type < kComponentTypes; ++type) {
        const auto i = static_cast<size_t>(type);
        const int32_t heat = heatOf(heats, type);
        record.heatSum[i] = wrappingAdd(record.heatSum[i], heat);
        if (isNew || heat > record.heatMax[i]) {
            record.heatMax[i] = heat;
        }
    }
    record.count = wrappingAdd(record.count, 1);
    if (level != -1) {
        record.levelSum = wrappingAdd(record.levelSum, level);
    }
    KLOGE("heatpc getCompentsHeat heatkey %s", key.c_str());
}

int32_t averageOf(int32_t sum, int32_t count) {
    return count == 0 ? 0 : static_cast<int32_t>(int64_t{sum} / count);
}

void addHeatValues(const HeatRawRecord& record, Json::Value& out) {
    for (const auto& [type, name] : kComponentNames) {
        const auto i = static_cast<size_t>(type);
        out["maxhv_" + std::string(name)] = record.heatMax[i];
        out["avghv_" + std::string(name)] = averageOf(record.heatSum[i], record.count);
    }
}

}  // namespace kelvo
