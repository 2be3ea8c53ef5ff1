#include "core/ThrottlingThresholds.h"

#include <limits>

namespace kelvo {

ThrottlingThresholds readThrottlingThresholds(const Json::Value& section) {
    ThrottlingThresholds thresholds;
    thresholds.values.fill(std::numeric_limits<int32_t>::max());
    if (!section.isArray()) {
        return thresholds;
    }
    for (const Json::Value& value : section) {
        if (thresholds.count < kThrottlingThresholds && value.isInt()) {
            thresholds.values[thresholds.count++] = value.asInt();
        }
    }
    return thresholds;
}

}  // namespace kelvo
