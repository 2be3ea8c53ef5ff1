#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace sim {

// Nodes that every phone has, by the phone's own paths.

inline constexpr std::string_view kShellTempPath = "/proc/shell-temp";
inline constexpr std::string_view kMainConfigPath = "/system_ext/etc/kelvo/kelvo.conf";
inline constexpr std::string_view kDataConfigPath = "/data/zenta_lib/kelvo.conf";
inline constexpr std::string_view kZonePathStart = "/sys/class/thermal/thermal_zone";

/** The node ("temp", "type") of thermal_zone`index`. */
inline std::string zonePath(int32_t index, std::string_view node) {
    return std::string(kZonePathStart) + std::to_string(index) + "/" + std::string(node);
}

}  // namespace sim
