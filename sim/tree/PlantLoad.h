#pragma once

#include <optional>
#include <string>
#include <vector>

#include "sim/plant/Plant.h"
#include "sim/scenario/Scenario.h"

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

/**
 * What the panel shows: 0 up to the power of the dark screen, then in proportion, at least 1.
 * Nothing without a backlight.
 */
std::optional<Panel> backlight(const Plant& plant);
/** The same as the nodes of a Qualcomm phone; nothing for another one. */
std::vector<NodeChange> backlightNodes(const Plant& plant, bool qcom);
/** The same as the panel HAL of a MediaTek phone answers it, in bytes; nothing for another one. */
std::optional<Panel> panelAnswers(const Plant& plant, bool qcom);

}  // namespace sim
