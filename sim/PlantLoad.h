#pragma once

#include <string>
#include <vector>

#include "sim/Plant.h"
#include "sim/Scenario.h"

// What the phone's load looks like from the power of the plant's sources. Pure.

namespace sim {

/** Task statistics as the performance HAL words them: the energy of each thread in 5 s. */
std::string taskStatistics(const Plant& plant);

/**
 * The clock and load nodes of the graphics processor, as a Qualcomm or a MediaTek phone has them:
 * the lowest clock that leaves some room, and what its power is of that at full load. Nothing
 * without a graphics processor.
 */
std::vector<NodeChange> gpuNodes(const Plant& plant, bool qcom);

}  // namespace sim
