#include "thermalstatus/ThermalLevels.h"

#include <cstdlib>

namespace kelvo {

namespace {

constexpr int32_t kWildcard = -1;
constexpr int64_t kReportedStep = 800;               // m°C
constexpr int32_t kReportAbove = 35000;              // m°C
constexpr int64_t kReportHoldOff = 121'000'000'000;  // ns

}  // namespace

bool isInHoldBand(const ThermalStatusModel& model, int32_t level, float celsius) {
    const auto index = static_cast<size_t>(level);
    return level >= 0 && index + 1 < kThermalLevels &&
           celsius < static_cast<float>(model.tripTemps[index + 1]) &&
           celsius > static_cast<float>(model.tripDownTemps[index]);
}

int32_t findThermalLevel(const std::vector<int32_t>& thresholds, float celsius) {
    size_t level = thresholds.size() - 1;
    while (level > 0 && celsius < static_cast<float>(thresholds[level])) {
        --level;
    }
    return static_cast<int32_t>(level);
}

std::optional<size_t> firstFallingEntry(const std::vector<int32_t>& list) {
    for (size_t i = 1; i < list.size(); ++i) {
        if (list[i] != kWildcard && list[i] < list[i - 1]) {
            return i;
        }
    }
    return std::nullopt;
}

bool isHeatSourceDue(const HeatSourceReport& last, int32_t temp, int64_t nowNs) {
    if (std::llabs(int64_t{temp} - last.temp) > kReportedStep) {
        return true;
    }
    return temp > kReportAbove && nowNs - int64_t{last.time} >= kReportHoldOff;
}

}  // namespace kelvo
