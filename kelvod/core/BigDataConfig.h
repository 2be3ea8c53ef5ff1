#pragma once

#include <json/value.h>

#include <cstdint>
#include <optional>

#include "config/ConfigFault.h"

namespace kelvo {

inline constexpr int32_t kDefaultSamplePeriod = 60;   // s
inline constexpr int32_t kShortestSamplePeriod = 10;  // s

/** "big_data": the collection of temperatures. */
struct BigDataConfig {
    bool enabled = false;
    int32_t samplePeriod = kDefaultSamplePeriod;  // s, between two samples
    /** Share of the days without thermal control, 1/1000; none when the section has no share. */
    std::optional<int32_t> thermalOffThousandth;
    ConfigFaults faults;
};

/** Reads the section, also where it is not enabled. Pure. */
BigDataConfig readBigDataConfig(const Json::Value& section);

}  // namespace kelvo
