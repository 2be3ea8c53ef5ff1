#include "thermalstatus/ThermalLevels.h"

#include <cstdlib>

#include "base/Time.h"

namespace kelvo {

namespace {

constexpr int64_t kReportedStep = 800;   // m°C
constexpr int32_t kReportAbove = 35000;  // m°C
constexpr int64_t kReportHoldOff = 121 * kNanosPerSecond;

}  // namespace

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
