#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "sim/scenario/Scenario.h"

namespace bench {

inline constexpr int32_t kZones = 24;
inline constexpr int32_t kModels = 6;

/** A phone with 24 zones at 40 °C and 6 models of four zones each, with a quiet log. */
sim::Scenario phone();

/** The same with a graphics processor, a display and the tables that share out their heat. */
sim::Scenario heatedPhone();

/** What the performance HAL says of so many threads. */
std::string taskStatistics(int threads);

/** What no daemon can do with less: opens, reads and closes each node; the bytes read. */
int64_t readNodes(const std::vector<std::string>& hostPaths);

/** Host paths of the zones' temperatures below a device root. */
std::vector<std::string> zonePaths(const std::string& root);
/** Host paths of the nodes that the heat components of heatedPhone() read. */
std::vector<std::string> heatNodePaths(const std::string& root);

}  // namespace bench
