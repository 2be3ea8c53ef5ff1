#pragma once

#include <json/value.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>

#include "heat/ComponentType.h"

namespace kelvo {

/** Heat statistics of a package or of a thermal level. */
struct HeatRawRecord {
    int32_t count = 0;     // updates folded in
    int32_t levelSum = 0;  // of the thermal status at those updates
    int32_t keepTime = 0;  // s at this thermal level; level records only
    std::array<int32_t, kComponentTypes> heatSum = {};  // m°C
    std::array<int32_t, kComponentTypes> heatMax = {};  // m°C
};

using HeatRecords = std::map<std::string, HeatRawRecord>;

/**
 * Folds the contributions `heats` (ComponentType → m°C, missing: 0) into the record of `key`. A
 * level of -1 is not summed. An empty key is ignored, and so is a new one when `records` holds more
 * than `maxRecords`.
 */
void updateCompRawData(const std::string& key, HeatRecords& records,
                       const std::map<int32_t, int32_t>& heats, int32_t level, size_t maxRecords);

/** `sum` over `count`, truncated; 0 when nothing was counted. */
int32_t averageOf(int32_t sum, int32_t count);

/** Adds "maxhv_NAME" and "avghv_NAME" of each component to a big-data object. */
void addHeatValues(const HeatRawRecord& record, Json::Value& out);

}  // namespace kelvo
