#pragma once

#include <json/value.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/** What the daemon tells of itself through binder at one moment; what it does not know is none. */
struct KelvodReport {
    std::optional<double> shell;  // °C
    std::optional<int32_t> level;
    std::optional<int32_t> status;
    std::optional<int32_t> ambient;         // °C
    std::optional<std::string> heatSource;  // the component that heats most
    int incarnation = 0;                    // grows when another daemon answers
};

/** The lists that GET_THERMAL_CONFIG answers: an entry a level. */
struct ThermalThresholds {
    std::vector<int32_t> hold;      // °C, rising
    std::vector<int32_t> holdDown;  // °C, falling
    std::vector<int32_t> status;
};

/**
 * The level that has this status and may hold at this temperature (°C); no call tells it. Where
 * several may, the one that is nearest to `before`, else the lowest. None when none may.
 */
std::optional<int32_t> levelOf(const ThermalThresholds& thresholds, int32_t status, double celsius,
                               std::optional<int32_t> before);

/** The component with the highest "avgHeat" of a heat report; none when no heat is above 0. */
std::optional<std::string> mainHeatSource(const Json::Value& report);
