#include "sim/scenario/Scenario.h"

#include <algorithm>

namespace sim {

const std::set<std::string>& allServices() {
    static const std::set<std::string> kServices{"health", "charger", "performance",
                                                 "panel",  "frames",  "quorix"};
    return kServices;
}

std::optional<int32_t> uniqueZone(const std::vector<ZoneSpec>& zones, const std::string& type) {
    std::optional<int32_t> found;
    for (size_t i = 0; i < zones.size(); ++i) {
        if (zones[i].type != type) {
            continue;
        }
        if (found) {
            return std::nullopt;
        }
        found = static_cast<int32_t>(i);
    }
    return found;
}

std::vector<std::string> zoneTypes(const std::vector<ZoneSpec>& zones) {
    std::vector<std::string> types(zones.size());
    std::ranges::transform(zones, types.begin(), &ZoneSpec::type);
    return types;
}

}  // namespace sim
