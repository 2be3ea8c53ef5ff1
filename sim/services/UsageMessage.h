#pragma once

#include <cstdint>
#include <vector>

#include "sim/scenario/Scenario.h"

namespace sim {

/** The report that this action makes, serialized; empty without any record. */
std::vector<uint8_t> usageMessage(const Usage& usage);

}  // namespace sim
