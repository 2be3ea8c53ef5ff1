#pragma once

#include <cstdint>
#include <string>

namespace kelvo {

/** A kernel thermal zone as a model or a component names it. */
struct ThermalZone {
    int32_t index = -1;  // N of thermal_zoneN; -1 while unresolved
    std::string name;    // type text; empty when the configuration gave a number
};

/** What came of reading a zone; the numbers are part of log lines. */
enum class ZoneState : int32_t {
    GOOD = 0,
    READ_FAILED = 1,
    HAL_FAILED = 2,  // a HAL service failed, which is no fault of the zone
    OUT_OF_RANGE = 3,
};

}  // namespace kelvo
