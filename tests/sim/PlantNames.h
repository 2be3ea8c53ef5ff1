#pragma once

#include <algorithm>
#include <optional>
#include <string_view>

#include "sim/plant/Plant.h"

/** What the sensor of the zone with this type shows, m°C; none for one that is not driven. */
inline std::optional<int32_t> zoneTemp(const sim::Plant& plant, std::string_view type) {
    const auto& zones = plant.params().zones;
    const auto found = std::ranges::find(zones, type, &sim::PlantParams::Zone::type);
    return found != zones.end()
                   ? std::optional(plant.zoneTemp(static_cast<size_t>(found - zones.begin())))
                   : std::nullopt;
}

/** °C of the node with this name; it must be there. */
inline double nodeTemp(const sim::Plant& plant, std::string_view name) {
    const auto& nodes = plant.params().nodes;
    const auto found = std::ranges::find(nodes, name, &sim::PlantParams::Node::name);
    return plant.nodeTemp(static_cast<size_t>(found - nodes.begin()));
}
