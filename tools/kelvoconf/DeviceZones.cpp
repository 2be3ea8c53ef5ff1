#include "DeviceZones.h"

#include <stdlib.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <system_error>

#include "Files.h"
#include "shelltemp/ZoneReader.h"
#include "shelltemp/ZoneTable.h"

namespace fs = std::filesystem;

namespace kelvoconf {

namespace {

constexpr char kZoneFolder[] = "/sys/class/thermal";
constexpr char kZonePrefix[] = "thermal_zone";
constexpr int32_t kSmallest = 1000;  // m°C: a sample nearer to 0 is hardly one in thousandths

void readSample(DeviceZone& zone) {
    int32_t temp = 0;
    const kelvo::ZoneState state = kelvo::readZone({zone.index, zone.type}, temp);
    if (state == kelvo::ZoneState::READ_FAILED) {
        zone.remarks.emplace_back("unreadable");
        zone.usable = false;
        return;
    }
    zone.sample = temp;
    if (state == kelvo::ZoneState::OUT_OF_RANGE) {
        zone.remarks.emplace_back("implausible: the daemon takes it as failed");
        zone.usable = false;
    } else if (std::abs(temp) < kSmallest) {
        zone.remarks.emplace_back("implausible: hardly m°C");
        zone.usable = false;
    }
}

void remarkSharedType(const kelvo::ZoneTable& table, DeviceZone& zone,
                      const std::vector<DeviceZone>& zones) {
    if (std::ranges::count(zones, zone.type, &DeviceZone::type) < 2) {
        return;
    }
    const int32_t found = table.indexOf(zone.type);
    zone.remarks.push_back("duplicate type: by it the daemon finds zone " + std::to_string(found));
    zone.usable = false;
}

}  // namespace

void useDeviceRoot(const std::string& root) {
    if (!fs::is_directory(root + kZoneFolder)) {
        throw Failure("no thermal zones below this device root: " + root);
    }
    setenv("KELVO_ROOT", root.c_str(), 1);
}

std::vector<DeviceZone> readDeviceZones() {
    kelvo::ZoneTable table;
    const int32_t count = table.discover();
    std::vector<DeviceZone> zones;
    for (int32_t index = 0; index < count; ++index) {
        zones.push_back({index, table.typeOf(index), {}, {}, true});
        readSample(zones.back());
    }
    for (DeviceZone& zone : zones) {
        remarkSharedType(table, zone, zones);
    }
    return zones;
}

std::vector<int32_t> zonesAfterGap(const std::string& root, int32_t count) {
    std::vector<int32_t> numbers;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(root + kZoneFolder, error)) {
        const std::string name = entry.path().filename();
        int32_t number = 0;
        const char* const digits = name.c_str() + sizeof(kZonePrefix) - 1;
        if (name.starts_with(kZonePrefix) &&
            std::from_chars(digits, name.c_str() + name.size(), number).ec == std::errc() &&
            number >= count) {
            numbers.push_back(number);
        }
    }
    std::ranges::sort(numbers);
    return numbers;
}

std::vector<ListedZone> readZones(const std::string& fileOrRoot) {
    if (!fs::is_directory(fileOrRoot)) {
        return readZoneList(readInput(fileOrRoot),
                            fileOrRoot == "-" ? "standard input" : fileOrRoot);
    }
    useDeviceRoot(fileOrRoot);
    std::vector<ListedZone> zones;
    for (DeviceZone& zone : readDeviceZones()) {
        zones.push_back({std::move(zone.type), zone.sample});
    }
    return zones;
}

}  // namespace kelvoconf
