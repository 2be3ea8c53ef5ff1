#include "sim/tree/PhoneTree.h"

#include <errno.h>
#include <fcntl.h>
#include <string.h>
#include <sys/stat.h>
#include <time.h>

#include <algorithm>
#include <system_error>

#include "base/FileUtils.h"
#include "base/Time.h"
#include "common/ConfigStore.h"
#include "config/ChipNodes.h"
#include "config/PlatformTable.h"
#include "sim/scenario/PhonePaths.h"
#include "sim/tree/PlantLoad.h"

namespace sim {

namespace {

/** What a node of the scenario holds; nothing when it is absent. */
std::string textOf(const std::vector<NodeChange>& nodes, std::string_view path) {
    const auto found = std::ranges::find(nodes, path, &NodeChange::path);
    return found == nodes.end() ? "" : found->text.value_or("");
}

bool hasNodeAtOrBelow(const std::vector<NodeChange>& nodes, const std::string& path) {
    return std::ranges::any_of(nodes, [&](const NodeChange& node) {
        return node.text && (node.path == path || node.path.starts_with(path + "/"));
    });
}

kelvo::ChipSource chipSource(const std::vector<NodeChange>& nodes) {
    return kelvo::findChipSource([&](const char* path) { return hasNodeAtOrBelow(nodes, path); });
}

/** The chip's identifier; 0, which no chip has, when the nodes do not say it. */
int32_t chipIn(const std::vector<NodeChange>& nodes) {
    const kelvo::ChipSource source = chipSource(nodes);
    if (source == kelvo::ChipSource::MTK_RECORD) {
        const std::string bytes = textOf(nodes, kelvo::kChipRecordNode);
        kelvo::tag_chipid record = {};
        memcpy(&record, bytes.data(), std::min(bytes.size(), sizeof(record)));
        return static_cast<int32_t>(record.hw_code);
    }
    const auto chip =
            kelvo::readChipNumbers(source, [&](const char* path) { return textOf(nodes, path); });
    return chip ? chip->id : 0;
}

std::string platformConfigPath(const Scenario& scenario) {
    return "/system_ext/etc/kelvo/kelvo_" + platformOf(scenario.nodes) + ".conf";
}

}  // namespace

std::string platformOf(const std::vector<NodeChange>& nodes) {
    return kelvo::platformNameAt(kelvo::platformOfChip(chipIn(nodes)));
}

PhoneTree::PhoneTree(DeviceTree& tree, const Scenario& scenario, ShellTempHook hook)
      : mTree(tree),
        mScenario(scenario),
        mHook(std::move(hook)),
        mPlatformConfigPath(platformConfigPath(scenario)),
        mIsQcom(chipSource(scenario.nodes) == kelvo::ChipSource::QCOM) {}

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
        mTree.setNode(path, common::encryptConfig(*json));
        stamp(path, 0);
    }
}

/** The daemon takes the newest file, so its age must not depend on the host's clock. */
void PhoneTree::stamp(std::string_view path, int64_t timeMs) const {
    const int64_t ns = mScenario.startNs + timeMs * kelvo::kNanosPerMilli;
    const timespec time{.tv_sec = static_cast<time_t>(ns / kelvo::kNanosPerSecond),
                        .tv_nsec = static_cast<long>(ns % kelvo::kNanosPerSecond)};
    const timespec times[2] = {time, time};
    if (utimensat(AT_FDCWD, mTree.hostPath(path).c_str(), times, 0) != 0) {
        throw std::system_error(errno, std::generic_category(), mTree.hostPath(path));
    }
}

void PhoneTree::setShellTemp(bool present) {
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
