#include "shelltemp/ZoneReader.h"

#include <stdlib.h>

#include "base/FileUtils.h"
#include "base/Log.h"
#include "config/PlatformAdaptor.h"

namespace kelvo {

namespace {

constexpr size_t kPathSize = 64;
constexpr int32_t kLowestTemp = -39999;   // m°C
constexpr int32_t kHighestTemp = 115000;  // m°C

}  // namespace

std::string zoneTempPath(const ThermalZone& zone, bool isQcom) {
    if (!isQcom && zone.name.starts_with("mtkts")) {
        return "/proc/mtktz/" + zone.name;
    }
    std::string path;
    path.reserve(kPathSize);
    path.append("/sys/class/thermal/thermal_zone").append(std::to_string(zone.index));
    return path.append("/temp");
}

bool isPlausibleTemp(int32_t temp) {
    return kLowestTemp <= temp && temp <= kHighestTemp;
}

ZoneState readZone(const ThermalZone& zone, int32_t& temp) {
    const std::string path = zoneTempPath(zone, PlatformAdaptor::getInstance().isQcom());
    const std::string content = getFile(path);
    if (content.empty()) {
        KLOGE("Read file(%s) failed!", path.c_str());
        return ZoneState::READ_FAILED;
    }
    temp = static_cast<int32_t>(strtol(content.c_str(), nullptr, 10));
    if (!isPlausibleTemp(temp)) {
        KLOGE("TZ(%d) temp %d is abnormal", zone.index, temp);
        return ZoneState::OUT_OF_RANGE;
    }
    return ZoneState::GOOD;
}

}  // namespace kelvo
