#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace client {

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
                               std::optional<int32_t> before = {});

}  // namespace client
