#pragma once

#include <json/value.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "config/ConfigFault.h"

namespace kelvo {

/** A list of "thermal_status_model" as the configuration has it. */
struct ThermalList {
    bool isArray = false;
    std::vector<int32_t> values;             // whole numbers only, which closes up over the others
    std::vector<Json::ArrayIndex> elements;  // where in the array each of them stands
    std::optional<size_t> falling;           // first value that is smaller than the one before

    /** Whether the engine takes the list; -1 may stand anywhere. */
    bool isUsable() const { return !values.empty() && !falling; }
};

/**
 * "thermal_status_model" and all that is wrong in it. The model cannot be used when a list is
 * MISSING, of the WRONG_TYPE as a whole, EMPTY or FALLING, or when the status values are of the
 * WRONG_LENGTH: other than the rising thresholds. Thresholds of the WRONG_LENGTH, other than that
 * of the levels, are used, but decide nothing; an element of the WRONG_TYPE is left out.
 */
struct ThermalModelReading {
    ThermalList tripTemps;
    ThermalList statusAreas;
    ThermalList statusReports;
    ThermalList tripDownTemps;
    ConfigFaults faults;
};

/** Reads the section. Pure. */
ThermalModelReading readThermalModel(const Json::Value& section);

}  // namespace kelvo
