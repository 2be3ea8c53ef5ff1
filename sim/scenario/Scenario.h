#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "client/CallTypes.h"
#include "sim/plant/PlantParams.h"
#include "sim/scenario/Expectation.h"

namespace sim {

/** Why a scenario is refused: what is wrong, in which file, at which member or line. */
class ScenarioError : public std::runtime_error {
  public:
    ScenarioError(std::string problem, std::string file, std::string place)
          : std::runtime_error(problem + ": " + file + (place.empty() ? "" : ": " + place)),
            mProblem(std::move(problem)),
            mFile(std::move(file)),
            mPlace(std::move(place)) {}

    /** "expected a whole number of m°C or null" */
    const std::string& problem() const { return mProblem; }
    const std::string& file() const { return mFile; }
    /** "timeline[3].set.cpu" or "line 7, column 12"; empty when the whole file is meant. */
    const std::string& place() const { return mPlace; }

  private:
    std::string mProblem;
    std::string mFile;
    std::string mPlace;
};

/** A thermal zone as it is at the start; its index is its place in Scenario::zones. */
struct ZoneSpec {
    std::string type;
    std::optional<int32_t> temp;  // m°C; none: unreadable
};

struct ZoneChange {
    int32_t index = 0;            // N of thermal_zoneN
    std::optional<int32_t> temp;  // m°C; none: the zone becomes unreadable
};

struct NodeChange {
    std::string path;                 // the phone's own
    std::optional<std::string> text;  // bytes as they stand; none: the node is absent
};

struct SetZones {
    std::vector<ZoneChange> zones;
};
struct SetNodes {
    std::vector<NodeChange> nodes;
};
struct SetProperties {
    std::vector<std::pair<std::string, std::string>> properties;  // name, value
};

/** The binder of the listener with this id; one is made when there is none yet. */
struct ListenerArgument {
    std::string id;
};
using Argument = std::variant<int32_t, std::string, std::vector<int32_t>, ListenerArgument>;
using client::ReplyType;

struct Transact {
    uint32_t code = 0;
    std::vector<Argument> args;
    std::optional<std::vector<ReplyType>> reply;  // none: no reply event for a call that succeeds
    uint32_t uid = 1000;
};
struct Listen {
    std::string id;
    uint32_t uid = 10050;
};
struct Unlisten {
    std::string id;
};
struct ListenerDies {
    std::string id;
};
struct ListenerFails {
    std::string id;
    uint32_t code = 0;  // transaction code of the callback
    int32_t count = 0;  // how many calls fail from now on
};

struct Health {
    bool ac = false;
    bool usb = false;
    bool wireless = false;
};
struct BatteryCurrent {
    int32_t value = 0;  // mA as the charger HAL answers it
};
struct TaskStats {
    std::string text;
};
struct Panel {
    std::optional<int32_t> max;    // 0..255; none: unchanged
    std::optional<int32_t> level;  // 0..255; none: unchanged
};
struct Frames {
    int32_t value = 0;
};

struct UsageRecord {
    std::optional<int64_t> start;
    std::optional<int64_t> end;
    std::optional<int64_t> energy;
};
struct Usage {
    std::vector<UsageRecord> cpu;
    std::vector<UsageRecord> wifi;
    std::vector<UsageRecord> cellular;
    std::vector<UsageRecord> display;
};
struct UsageBytes {
    std::string bytes;
};

struct ServiceState {
    std::string name;
    bool up = false;
};
struct Dump {
    std::vector<std::string> args;
    uint32_t uid = 1000;
};

using Deed = std::variant<SetZones, SetNodes, SetProperties, Transact, Listen, Unlisten,
                          ListenerDies, ListenerFails, Health, BatteryCurrent, TaskStats, Panel,
                          Frames, Usage, UsageBytes, ServiceState, Dump>;

struct Action {
    int64_t timeMs = 0;  // phone time since t = 0
    Deed deed;
};

/** Plain contents of the configuration files, each optional. */
struct ConfigFiles {
    std::optional<std::string> main;
    std::optional<std::string> data;
    std::optional<std::string> platform;
};

/** Which health HAL the phone's maker built in. */
enum class HealthHal { Aidl, Hidl };

/** All services that a scenario can name. */
const std::set<std::string>& allServices();

/** A checked scenario. Everything but the trace's rows is in it. */
struct Scenario {
    std::string name;
    int64_t startNs = 0;        // wall clock at t = 0, ns since the epoch
    int64_t uptimeMs = 100000;  // monotonic clock at t = 0
    int64_t durationMs = 0;
    std::map<std::string, std::string> properties;  // with persist.sys.kelvo.enable
    std::vector<NodeChange> nodes;                  // as they are before start
    std::vector<ZoneSpec> zones;
    ConfigFiles config;
    std::set<std::string> services = allServices();  // present at start
    HealthHal healthHal = HealthHal::Aidl;
    std::optional<std::string> trace;  // host path of the CSV file
    std::optional<PlantParams> plant;
    std::vector<Action> timeline;     // sorted by time, stably
    std::vector<Expectation> expect;  // in the file's order
};

/** The index of the zone of this type; none when there is no such zone or more than one. */
std::optional<int32_t> uniqueZone(const std::vector<ZoneSpec>& zones, const std::string& type);

/** The types of the zones in index order. */
std::vector<std::string> zoneTypes(const std::vector<ZoneSpec>& zones);

}  // namespace sim
