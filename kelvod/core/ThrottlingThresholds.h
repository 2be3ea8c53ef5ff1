#pragma once

#include <json/value.h>

#include <array>
#include <cstddef>
#include <cstdint>

namespace kelvo {

inline constexpr size_t kThrottlingThresholds = 7;

/** The array form of "shell_temp_broadcast"; as an object it holds the band of the broadcasts. */
struct ThrottlingThresholds {
    std::array<int32_t, kThrottlingThresholds> values{};  // those not given are INT32_MAX
    size_t count = 0;                                     // of those given
};

/** Takes the first whole numbers of an array and passes over what is none. Pure. */
ThrottlingThresholds readThrottlingThresholds(const Json::Value& section);

}  // namespace kelvo
