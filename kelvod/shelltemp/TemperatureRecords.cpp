#include "shelltemp/TemperatureRecords.h"

#include <cstdlib>

#include "base/Numeric.h"
#include "base/TimeUtils.h"

namespace kelvo {

namespace {

// The magnitude of the smallest int32 does not fit into one.
int64_t magnitude(int32_t value) {
    return std::llabs(int64_t{value});
}

Json::Value extreme(int32_t temp, const std::string& time) {
    Json::Value value(Json::objectValue);
    value["temp"] = temp;
    value["time"] = time;
    return value;
}

}  // namespace

void TemperatureRecords::record(const ZoneTemps& zoneTemps, const FittingTemps& fitted,
                                const FittingTemps& previous) {
    for (const auto& [index, temp] : zoneTemps) {
        recordZone(index, temp);
    }
    for (const auto& [index, temp] : fitted) {
        const auto before = previous.find(index);
        if (before != previous.end()) {
            recordDelta(index, wrappingSub(temp, before->second));
        }
    }
}

void TemperatureRecords::recordZone(int32_t index, int32_t temp) {
    const auto [entry, first] = mZones.try_emplace(index);
    TempData& data = entry->second;
    if (first || temp < data.min) {
        data.min = temp;
        data.minTime = getTimestamp();
    }
    if (first || temp > data.max) {
        data.max = temp;
        data.maxTime = getTimestamp();
    }
}

void TemperatureRecords::recordDelta(int32_t index, int32_t delta) {
    const auto [entry, isNew] = mDeltas.try_emplace(index);
    if (isNew || magnitude(delta) > magnitude(entry->second.delta)) {
        entry->second = {delta, getTimestamp()};
    }
}

void TemperatureRecords::clear() {
    mZones.clear();
    mDeltas.clear();
}

Json::Value TemperatureRecords::zonesAsJson(const ZoneTable& table) const {
    Json::Value zones(Json::objectValue);
    for (const auto& [index, data] : mZones) {
        const std::string type = table.typeOf(index);
        Json::Value& zone = zones[type.empty() ? std::to_string(index) : type];
        zone["min"] = extreme(data.min, data.minTime);
        zone["max"] = extreme(data.max, data.maxTime);
    }
    return zones;
}

Json::Value TemperatureRecords::deltasAsJson(const ModelNames& names) const {
    Json::Value deltas(Json::objectValue);
    for (const auto& [index, data] : mDeltas) {
        Json::Value& delta = deltas[nameOf(names, index)];
        delta["delta"] = data.delta;
        delta["time"] = data.time;
    }
    return deltas;
}

}  // namespace kelvo
