#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "ZoneList.h"

namespace kelvoconf {

/** A thermal zone of a device tree. */
struct DeviceZone {
    int32_t index = 0;
    std::string type;
    std::optional<int32_t> sample;     // m°C; none: it cannot be read
    std::vector<std::string> remarks;  // what is odd about it
    bool usable = true;                // for models, by its type
};

/**
 * Makes a folder the device root of this process, for the daemon's functions that read nodes; once
 * and before any of them. Throws Failure when it has no thermal zones.
 */
void useDeviceRoot(const std::string& root);

/** The zones that the daemon finds below the device root, read as it reads them. */
std::vector<DeviceZone> readDeviceZones();

/** Numbers of zone folders that the daemon does not find, as they come after a gap. */
std::vector<int32_t> zonesAfterGap(const std::string& root, int32_t count);

/** The zones of a list (see readZoneList) or of a device root. Throws Failure. */
std::vector<ListedZone> readZones(const std::string& fileOrRoot);

}  // namespace kelvoconf
