#pragma once

#include <json/value.h>

#include <vector>

#include "DeviceZones.h"

namespace kelvoconf {

/**
 * A configuration to begin with: the scene "default" with the four usual models, each a plain mean
 * of the zones that are named after it or else are near the shell by their names, scenes that step
 * in when one of those fails, and 21 levels. Throws Failure when no zone can be used.
 */
Json::Value makeSkeleton(const std::vector<DeviceZone>& zones);

}  // namespace kelvoconf
