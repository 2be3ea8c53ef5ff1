#pragma once

#include <json/value.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace kelvo {

/** A list of "thermal_status_model" as the configuration has it. */
struct ThermalList {
    bool isArray = false;
    std::vector<int32_t> values;            // whole numbers only, which closes up over the others
    std::vector<Json::ArrayIndex> skipped;  // elements that are none
    std::optional<size_t> falling;          // first value that is smaller than the one before

    /** Whether the engine takes the list; -1 may stand anywhere. */
    bool isUsable() const { return !values.empty() && !falling; }
};

/** Reads a list. Pure. */
ThermalList readThermalList(const Json::Value& value);

}  // namespace kelvo
