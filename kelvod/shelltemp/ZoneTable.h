#pragma once

#include <json/value.h>

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "shelltemp/ThermalZone.h"

namespace kelvo {

/** The kernel's thermal zones by type. Not thread-safe; the caller serialises. */
class ZoneTable {
  public:
    /**
     * Reads the types of thermal_zone0, 1, … up to the first gap and returns how many there are. Of
     * zones that share a type the last one is found by it. A further call overwrites the types'
     * indexes and appends to the list of types.
     */
    int32_t discover();
    /** Appends a zone by its type. */
    void add(std::string type);

    bool empty() const { return mIndexByType.empty(); }
    /** Index of the zone of this type, -1 when there is none. */
    int32_t indexOf(const std::string& type) const;
    /** Type of thermal_zone`index`, empty when the zone is unknown. */
    std::string typeOf(int32_t index) const;

  private:
    std::map<std::string, int32_t> mIndexByType;
    std::vector<std::string> mTypes;  // entry N is the type of thermal_zoneN
};

/** The zones that a configuration lists by type. */
struct ZoneList {
    std::vector<ThermalZone> zones;          // as far as they are known, in order
    std::optional<std::string> unknownType;  // styled JSON of the first element that is not
};

/** Resolves `info`."thermal_zone_type"; the walk stops at the first unknown or non-text element. */
ZoneList resolveZoneList(const Json::Value& info, const ZoneTable& table);

}  // namespace kelvo
