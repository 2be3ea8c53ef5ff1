#include "client/ThermalLevel.h"

#include <algorithm>

namespace client {

std::optional<int32_t> levelOf(const ThermalThresholds& thresholds, int32_t status, double celsius,
                               std::optional<int32_t> before) {
    const auto& [hold, holdDown, statuses] = thresholds;
    const size_t levels = std::min({hold.size(), holdDown.size(), statuses.size()});
    std::vector<int32_t> possible;
    for (size_t i = 0; i < levels; ++i) {
        const bool isLow = i > 0 && celsius < holdDown[i];
        const bool isHigh = i + 1 < levels && celsius >= hold[i + 1];
        if (statuses[i] == status && !isLow && !isHigh) {
            possible.push_back(static_cast<int32_t>(i));
        }
    }
    if (possible.empty()) {
        return std::nullopt;
    }
    // A rise ends at the lowest of them, a fall at the highest.
    return std::clamp(before.value_or(possible.front()), possible.front(), possible.back());
}

}  // namespace client
