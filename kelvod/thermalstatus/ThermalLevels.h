#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// The rules of thermal levels, over plain values. Thread-safe.

namespace kelvo {

/** Levels 0 to 20; the decision needs a rising and a falling threshold for each. */
inline constexpr size_t kThermalLevels = 21;

/** An entry that may stand anywhere in a list; as a threshold it is reached at any temperature. */
inline constexpr int32_t kWildcard = -1;

/** The lists of "thermal_status_model", one entry a level. */
struct ThermalStatusModel {
    std::vector<int32_t> tripTemps;      // °C, rising
    std::vector<int32_t> statusAreas;    // status value
    std::vector<int32_t> statusReports;  // loaded and printed, read by nobody
    std::vector<int32_t> tripDownTemps;  // °C, falling

    /** Whether there are thresholds for all levels: with fewer, or more, nothing is decided. */
    bool hasAllLevels() const {
        return tripTemps.size() == kThermalLevels && tripDownTemps.size() == kThermalLevels;
    }
};

/**
 * The first position whose entry is smaller than the entry before it; none in a list that never
 * falls. An entry of -1 is a wildcard: it is not compared with what stands before it, but what
 * follows is compared with it.
 */
std::optional<size_t> firstFallingEntry(const std::vector<int32_t>& list);

/** When the last heat source was reported, and at which temperature (m°C). */
struct HeatSourceReport {
    int32_t temp = 0;
    /**
     * Low 32 bits of the monotonic clock (ns), sign-extended when compared with all of it: at most
     * 2.1 s. So the hold-off of 121 s ends when the clock passes about two minutes, whenever the
     * report was; from then on every whole degree above 35 °C is reported. It must stay so.
     */
    int32_t time = 0;
};

/** Whether a report is due at this temperature (m°C) and time (monotonic, ns). */
bool isHeatSourceDue(const HeatSourceReport& last, int32_t temp, int64_t nowNs);

}  // namespace kelvo
