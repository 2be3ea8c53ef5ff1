#pragma once

#include <cstdint>
#include <string>

#include "shelltemp/ThermalZone.h"

namespace kelvo {

/**
 * Node that holds a zone's temperature: MediaTek's thermistors ("mtkts…") have one of their own on
 * platforms other than Qualcomm's, every other zone is read below /sys.
 */
std::string zoneTempPath(const ThermalZone& zone, bool isQcom);

/** Whether a shell or board sensor can show this temperature (m°C). */
bool isPlausibleTemp(int32_t temp);

/**
 * Reads a zone. `temp` (m°C) is set whenever the node could be read, also when the value is out of
 * range; otherwise it is left alone. Thread-safe.
 */
ZoneState readZone(const ThermalZone& zone, int32_t& temp);

}  // namespace kelvo
