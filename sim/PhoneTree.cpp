#include "sim/PhoneTree.h"

#include <errno.h>
#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <time.h>

#include <algorithm>
#include <system_error>

#include "config/PlatformTable.h"
#include "sim/ConfigStore.h"
#include "sim/PlantLoad.h"

namespace sim {

namespace {

constexpr int64_t kNsPerMs = 1000000;
constexpr int64_t kNsPerSecond = 1000000000;

constexpr std::string_view kChipRecordPath = "/proc/device-tree/chosen/atag,chipid";
constexpr size_t kHwCodeOffset = 4;  // in the record of little-endian words

/** What a node of the scenario holds; nothing when it is absent. */
std::string textOf(const std::vector<NodeChange>& nodes, std::string_view path) {
    const auto found = std::ranges::find(nodes, path, &NodeChange::path);
    return found == nodes.end() ? "" : found->text.value_or("");
}

bool hasNodeBelow(const std::vector<NodeChange>& nodes, std::string_view path) {
    return std::ranges::any_of(nodes, [&](const NodeChange& node) {
        return node.text && node.path.starts_with(path);
    });
}

int64_t hwCode(const std::string& record) {
    int64_t code = 0;
    for (size_t i = 0; i < 4 && kHwCodeOffset + i < record.size(); ++i) {
        code |= static_cast<int64_t>(static_cast<uint8_t>(record[kHwCodeOffset + i])) << (8 * i);
    }
    return code;
}

/** The identifier in a node, when the node of the chip's version stands beside it. */
int64_t idIn(const std::vector<NodeChange>& nodes, std::string_view id, std::string_view version,
             int base) {
    const bool known = !textOf(nodes, version).empty();
    return known ? strtol(textOf(nodes, id).c_str(), nullptr, base) : 0;
}

bool areQcom(const std::vector<NodeChange>& nodes) {
    return !hasNodeBelow(nodes, kChipRecordPath) && !hasNodeBelow(nodes, "/proc/chip");
}

std::string platformConfigPath(const Scenario& scenario) {
    return "/system_ext/etc/kelvo/kelvo_" + platformOf(scenario.nodes) + ".conf";
}

}  // namespace

std::string platformOf(const std::vector<NodeChange>& nodes) {
    int64_t id = 0;
    if (hasNodeBelow(nodes, kChipRecordPath)) {
        id = hwCode(textOf(nodes, kChipRecordPath));
    } else if (hasNodeBelow(nodes, "/proc/chip/")) {
        id = idIn(nodes, "/proc/chip/hw_code", "/proc/chip/hw_subcode", 16);
    } else {
        id = idIn(nodes, "/sys/devices/soc0/soc_id", "/sys/devices/soc0/raw_version", 10);
    }
    return kelvo::platformNameAt(kelvo::platformOfChip(static_cast<int32_t>(id)));
}

PhoneTree::PhoneTree(DeviceTree& tree, const Scenario& scenario, ShellTempHook hook)
      : mTree(tree),
        mScenario(scenario),
        mHook(std::move(hook)),
        mPlatformConfigPath(platformConfigPath(scenario)),
        mIsQcom(areQcom(scenario.nodes)) {}

void PhoneTree::build() {
    for (const auto& [name, value] : mScenario.properties) {
        mTree.setProperty(name, value);
    }
    for (size_t i = 0; i < mScenario.zones.size(); ++i) {
        mTree.addZone(static_cast<int32_t>(i), mScenario.zones[i].type, mScenario.zones[i].temp);
    }
    storeConfig(kMainConfigPath, mScenario.config.main);
    storeConfig(kDataConfigPath, mScenario.config.data);
    storeConfig(mPlatformConfigPath, mScenario.config.platform);
    const auto named = [](const NodeChange& node) { return node.path == kShellTempPath; };
    if (std::ranges::none_of(mScenario.nodes, named)) {
        setShellTemp(true);
    }
    for (const NodeChange& node : mScenario.nodes) {
        setNode(node, 0);
    }
    if (mScenario.plant) {
        apply(Plant(*mScenario.plant));
    }
}

void PhoneTree::storeConfig(std::string_view path, const std::optional<std::string>& json) {
    if (json) {
        mTree.setNode(path, kelvo::encryptConfig(*json));
        stamp(path, 0);
    }
}

/** The daemon takes the newest file, so its age must not depend on the host's clock. */
void PhoneTree::stamp(std::string_view path, int64_t timeMs) const {
    const int64_t ns = mScenario.startNs + timeMs * kNsPerMs;
    const timespec time{.tv_sec = static_cast<time_t>(ns / kNsPerSecond),
                        .tv_nsec = static_cast<long>(ns % kNsPerSecond)};
    const timespec times[2] = {time, time};
    if (utimensat(AT_FDCWD, mTree.hostPath(path).c_str(), times, 0) != 0) {
        throw std::system_error(errno, std::generic_category(), mTree.hostPath(path));
    }
}

void PhoneTree::setShellTemp(bool present) {
    mShellTempPresent = present;
    if (mHook) {
        mHook(present);
    } else if (present) {
        mTree.setNode(kShellTempPath, "");
    } else {
        mTree.removeNode(kShellTempPath);
    }
}

void PhoneTree::setNode(const NodeChange& change, int64_t timeMs) {
    if (change.path == kShellTempPath) {
        setShellTemp(change.text.has_value());
        return;
    }
    if (!change.text) {
        mTree.removeNode(change.path);
        return;
    }
    mTree.setNode(change.path, *change.text);
    if (change.path == kMainConfigPath || change.path == kDataConfigPath ||
        change.path == mPlatformConfigPath) {
        stamp(change.path, timeMs);
    }
}

void PhoneTree::apply(const ZoneChange& change) {
    if (change.temp) {
        mUnreadable.erase(change.index);
    } else {
        mUnreadable.insert(change.index);
    }
    mTree.setZoneTemp(change.index, change.temp);
}

void PhoneTree::apply(const SetZones& action) {
    std::ranges::for_each(action.zones, [&](const ZoneChange& change) { apply(change); });
}

void PhoneTree::apply(const SetNodes& action, int64_t timeMs) {
    std::ranges::for_each(action.nodes, [&](const NodeChange& node) { setNode(node, timeMs); });
}

void PhoneTree::apply(const SetProperties& action) {
    for (const auto& [name, value] : action.properties) {
        mTree.setProperty(name, value);
    }
}

void PhoneTree::apply(const TraceRow& row) {
    for (const ZoneChange& change : row.zones) {
        apply(change);
    }
    for (const NodeChange& node : row.nodes) {
        setNode(node, row.timeMs);
    }
}

void PhoneTree::apply(const Plant& plant) {
    const auto& zones = plant.params().zones;
    for (size_t i = 0; i < zones.size(); ++i) {
        if (!mUnreadable.contains(zones[i].index)) {
            mTree.setZoneTemp(zones[i].index, plant.zoneTemp(i));
        }
    }
    for (const NodeChange& node : gpuNodes(plant, mIsQcom)) {
        mTree.setNode(node.path, *node.text);
    }
    for (const NodeChange& node : backlightNodes(plant, mIsQcom)) {
        mTree.setNode(node.path, *node.text);
    }
}

}  // namespace sim
