#pragma once

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "sim/plant/Plant.h"
#include "sim/scenario/Scenario.h"
#include "sim/scenario/Trace.h"
#include "sim/tree/DeviceTree.h"

namespace sim {

/** The name of the chip that these nodes describe ("SM8450"); empty when it is not supported. */
std::string platformOf(const std::vector<NodeChange>& nodes);

/**
 * The device tree of a scenario: builds it and applies to it what happens later. "/proc/shell-temp"
 * is left to a hook, because whoever runs the scenario decides what stands there. Not thread-safe.
 * Failures throw std::system_error.
 */
class PhoneTree {
  public:
    /** Told whether "/proc/shell-temp" is there from now on, at first by build(). */
    using ShellTempHook = std::function<void(bool present)>;

    /** Both live longer than this. Without a hook the node is an ordinary file. */
    PhoneTree(DeviceTree& tree, const Scenario& scenario, ShellTempHook hook = {});

    /** Writes the whole tree as it is before the daemon starts. */
    void build();

    /** Whether the scenario's nodes are those of a Qualcomm phone. */
    bool isQcom() const { return mIsQcom; }
    DeviceTree& tree() { return mTree; }

    void apply(const ZoneChange& change);
    void apply(const SetZones& action);
    /** `timeMs` becomes the modification time of configuration files among the nodes. */
    void apply(const SetNodes& action, int64_t timeMs);
    void apply(const SetProperties& action);
    void apply(const TraceRow& row);
    /**
     * Writes the zones that the plant drives, but for those that an action made unreadable, and the
     * nodes of its graphics processor and backlight.
     */
    void apply(const Plant& plant);

  private:
    void storeConfig(std::string_view path, const std::optional<std::string>& json);
    void setNode(const NodeChange& change, int64_t timeMs);
    void setShellTemp(bool present);
    void stamp(std::string_view path, int64_t timeMs) const;

    DeviceTree& mTree;
    const Scenario& mScenario;
    const ShellTempHook mHook;
    const std::string mPlatformConfigPath;
    const bool mIsQcom;
    std::set<int32_t> mUnreadable;  // zones that an action or the trace made so
};

}  // namespace sim
