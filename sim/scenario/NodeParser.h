#pragma once

#include <string>
#include <utility>
#include <vector>

#include "sim/scenario/JsonPlace.h"
#include "sim/scenario/Scenario.h"

namespace sim {

/** Whether a text names a node of the phone: absolute, no empty, "." or ".." part. */
bool isNodePath(std::string_view path);

/** An object path → text, {"hex": …} or null. */
std::vector<NodeChange> parseNodes(const JsonPlace& nodes);

/** An object property name → value. */
std::vector<std::pair<std::string, std::string>> parseProperties(const JsonPlace& properties);

/** m°C or null. */
std::optional<int32_t> parseZoneTemp(const JsonPlace& temp);

/** Whether one of the known services has this name; otherwise says which one may be meant. */
std::string parseServiceName(const JsonPlace& name);

}  // namespace sim
