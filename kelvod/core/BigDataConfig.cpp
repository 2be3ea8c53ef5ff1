#include "core/BigDataConfig.h"

#include "config/ConfigNames.h"
#include "config/ConfigPath.h"

namespace kelvo {

namespace {

using Kind = ConfigFault::Kind;

/** A whole number of the section; none when it is missing or of another type. */
std::optional<int32_t> readInt(const Json::Value& section, const char* name, ConfigFaults& faults) {
    const Json::Value* const value = findMember(section, name);
    if (value == nullptr) {
        return std::nullopt;
    }
    if (!value->isInt()) {
        faults.push_back({Kind::WRONG_TYPE, name});
        return std::nullopt;
    }
    return value->asInt();
}

}  // namespace

BigDataConfig readBigDataConfig(const Json::Value& section) {
    BigDataConfig config;
    config.enabled = readInt(section, key::kEnable, config.faults) == 1;
    const auto share = readInt(section, key::kThermalOffThousandth, config.faults);
    if (share && *share < 0) {
        config.faults.push_back({Kind::OUT_OF_RANGE, key::kThermalOffThousandth});
    } else if (share && *share > 0) {  // 0 is right, but takes no earlier share away
        config.thermalOffThousandth = share;
    }
    const auto period = readInt(section, key::kSamplePeriod, config.faults);
    if (period && *period < kShortestSamplePeriod) {
        config.faults.push_back({Kind::OUT_OF_RANGE, key::kSamplePeriod});
    } else if (period) {
        config.samplePeriod = *period;
    }
    return config;
}

}  // namespace kelvo
