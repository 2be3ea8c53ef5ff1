// Kernel nodes with any content, read by the engines of a Qualcomm and of a MediaTek phone. A step
// of the input: which node, how long it stands so, and its counted bytes.

#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "FuzzPhone.h"
#include "Input.h"
#include "base/FileUtils.h"
#include "config/CpuPowerTable.h"
#include "config/PlatformTable.h"
#include "sim/scenario/PhonePaths.h"

namespace {

constexpr size_t kMostSteps = 48;
constexpr char kChipRecord[] = "/proc/device-tree/chosen/atag,chipid";

std::vector<std::string> nodePaths(const sim::Scenario& scenario) {
    std::vector<std::string> paths{"/sys/class/kgsl/kgsl-3d0/devfreq/gpu_load",
                                   "/sys/class/kgsl/kgsl-3d0/gpu_busy_percentage",
                                   "/sys/class/kgsl/kgsl-3d0/gpuclk",
                                   "/sys/module/ged/parameters/gpu_loading",
                                   "/sys/kernel/ged/hal/current_freqency",
                                   "/sys/class/backlight/panel0-backlight/brightness",
                                   "/sys/class/backlight/panel0-backlight/max_brightness",
                                   "/dev/properties/persist.sys.shelltemp.interval",
                                   "/dev/properties/persist.sys.kelvo.dc"};
    for (size_t i = 0; i < scenario.zones.size(); ++i) {
        paths.push_back(sim::zonePath(static_cast<int32_t>(i), "temp"));
        paths.push_back(sim::zonePath(static_cast<int32_t>(i), "type"));
        paths.push_back("/proc/mtktz/" + scenario.zones[i].type);
    }
    return paths;
}

/** What is read only while the daemon starts. */
void readAtStart(FuzzPhone& phone, Bytes data) {
    phone.store(kChipRecord, textOf(data));
    kelvo::tag_chipid record = {};
    kelvo::getMtkChipVersion(kChipRecord, record);
    kelvo::platformNameAt(kelvo::platformOfChip(static_cast<int32_t>(record.hw_code)));
    std::istringstream stream{std::string(textOf(data))};
    Json::Value table;
    const bool hasEntries = kelvo::parseCpuPowerTable(stream, table) == 0;
    require(hasEntries == !table.empty(), "a table has entries when its parser says so");
}

/** As before the input, but for what the daemon remembers. */
void restore(FuzzPhone& phone, const std::set<std::string>& paths) {
    sim::SetNodes before;
    for (const std::string& path : paths) {
        before.nodes.push_back({path, std::nullopt});
    }
    before.nodes.insert(before.nodes.end(), phone.scenario().nodes.begin(),
                        phone.scenario().nodes.end());
    phone.perform(before);
    for (size_t i = 0; i < phone.scenario().zones.size(); ++i) {
        const sim::ZoneSpec& zone = phone.scenario().zones[i];
        const auto index = static_cast<int32_t>(i);
        if (paths.count(sim::zonePath(index, "type")) > 0) {
            phone.store(sim::zonePath(index, "type"), zone.type + "\n");
        }
        phone.perform(sim::SetZones{{{index, zone.temp}}});
    }
}

void feed(FuzzPhone& phone, Bytes data) {
    static const std::vector<std::string> paths = nodePaths(phone.scenario());
    readAtStart(phone, data);
    phone.setZones(41000);
    std::set<std::string> changed;
    bool reloaded = false;
    Input input(data);
    for (size_t i = 0; i < kMostSteps && !input.empty(); ++i) {
        const std::string& path = input.oneOf(paths);
        const uint8_t how = input.byte();
        phone.store(path, textOf(input.counted()));
        changed.insert(path);
        if (how % 16 == 0) {
            phone.reload();  // finds zones and reads properties again
            reloaded = true;
        }
        phone.run(how % 4 * 2500);
    }
    phone.askAll();
    restore(phone, changed);
    if (reloaded) {
        phone.reload();
    }
    phone.run(6000);
}

}  // namespace

void fuzzNodes(Bytes data) {
    feed(FuzzPhone::get("game"), data);
}

void fuzzNodesMtk(Bytes data) {
    feed(FuzzPhone::get("charge"), data);
}
