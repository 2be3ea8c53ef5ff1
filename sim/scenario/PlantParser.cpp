#include "sim/scenario/PlantParser.h"

#include <algorithm>

#include "sim/plant/Plant.h"

#include "common/NearestName.h"

namespace sim {

namespace {

constexpr size_t kMostParts = 1000;
constexpr double kColdest = -273.15;        // °C
constexpr double kHottest = 1000;           // °C
constexpr double kMostPower = 1000;         // W
constexpr int32_t kMostDeviation = 100000;  // m°C
constexpr int32_t kLargestId = 4194304;     // the kernel's largest process id
constexpr int32_t kLargestClock = 10000000;
constexpr int32_t kLargestLevel = 10239;  // of a backlight

double within(const JsonPlace& place, double least, double most, const std::string& expected) {
    const double value = place.number();
    if (!(value >= least && value <= most)) {
        place.fail("expected " + expected);
    }
    return value;
}

double temperature(const JsonPlace& place) {
    return within(place, kColdest, kHottest, "°C from -273.15 to 1000");
}

double power(const JsonPlace& place) {
    return within(place, -kMostPower, kMostPower, "W from -1000 to 1000");
}

double positive(const JsonPlace& place, const std::string& unit) {
    return within(place, 1e-6, 1e9, unit + " from 0.000001 to 1000000000");
}

/** A constant, or an array of [seconds, value]. */
Profile profile(const JsonPlace& place, double (*read)(const JsonPlace&)) {
    if (!place.isArray()) {
        return {{{0, read(place)}}};
    }
    Profile result;
    for (const JsonPlace& element : place.elements()) {
        const auto pair = element.elements();
        if (pair.size() != 2) {
            element.fail("expected [seconds, value]");
        }
        const double time = static_cast<double>(pair[0].milliseconds()) / 1000;
        if (!result.points.empty() && time < result.points.back().time) {
            pair[0].fail("time goes back");
        }
        result.points.push_back({time, read(pair[1])});
    }
    if (result.points.empty()) {
        place.fail("expected a number or at least one [seconds, value]");
    }
    return result;
}

std::vector<std::pair<std::string, JsonPlace>> limitedMembers(const JsonPlace& place) {
    auto members = place.members();
    if (members.size() > kMostParts) {
        place.fail("expected at most " + std::to_string(kMostParts) + " members");
    }
    return members;
}

int32_t nodeIndex(const JsonPlace& place, const PlantParams& params, bool allowAmbient) {
    const std::string name = place.text();
    if (allowAmbient && name == "ambient") {
        return kAmbientNode;
    }
    const auto found = std::ranges::find(params.nodes, name, &PlantParams::Node::name);
    if (found == params.nodes.end()) {
        std::vector<std::string> known;
        for (const auto& node : params.nodes) {
            known.push_back(node.name);
        }
        place.fail("no plant node \"" + name + "\"" + common::suggestion(name, known));
    }
    return static_cast<int32_t>(found - params.nodes.begin());
}

void readNodes(const JsonPlace& place, PlantParams& params) {
    for (const auto& [name, node] : limitedMembers(place)) {
        node.onlyMembers({"capacity", "start"});
        if (name == "ambient") {
            node.fail("the ambient is no node with a capacity");
        }
        const auto start = node.find("start");
        params.nodes.push_back({name, positive(node.need("capacity"), "J/K"),
                                start ? temperature(*start) : valueAt(params.ambient, 0)});
    }
}

void readLinks(const JsonPlace& place, PlantParams& params) {
    for (const JsonPlace& link : place.elements()) {
        link.onlyMembers({"between", "resistance"});
        const JsonPlace between = link.need("between");
        const auto ends = between.elements();
        if (ends.size() != 2) {
            between.fail("expected two node names");
        }
        const int32_t from = nodeIndex(ends[0], params, true);
        const int32_t to = nodeIndex(ends[1], params, true);
        if (from == to) {
            between.fail("expected two different nodes");
        }
        params.links.push_back({from, to, positive(link.need("resistance"), "K/W")});
    }
    if (params.links.size() > kMostParts) {
        place.fail("expected at most " + std::to_string(kMostParts) + " links");
    }
}

void readSources(const JsonPlace& place, PlantParams& params) {
    for (const auto& [name, source] : limitedMembers(place)) {
        source.onlyMembers({"node", "power", "drains"});
        const auto drains = source.find("drains");
        params.sources.push_back({name, nodeIndex(source.need("node"), params, false),
                                  profile(source.need("power"), power),
                                  drains ? drains->boolean() : true});
    }
}

void readZones(const JsonPlace& place, const std::vector<ZoneSpec>& zones, PlantParams& params) {
    const auto optional = [](const JsonPlace& zone, std::string_view name, int32_t least,
                             int32_t absent) {
        const auto member = zone.find(name);
        return member ? static_cast<int32_t>(member->whole(least, kMostDeviation)) : absent;
    };
    for (const auto& [type, zone] : place.members()) {
        zone.onlyMembers({"node", "offset", "resolution", "noise"});
        const auto index = uniqueZone(zones, type);
        if (!index) {
            zone.fail("no zone, or more than one, of this type");
        }
        params.zones.push_back({*index, type, nodeIndex(zone.need("node"), params, false),
                                optional(zone, "offset", -kMostDeviation, 0),
                                optional(zone, "resolution", 1, 1), optional(zone, "noise", 0, 0)});
    }
}

PlantParams::Battery readBattery(const JsonPlace& place) {
    place.onlyMembers({"voltage", "charge"});
    const auto charge = place.find("charge");
    return {within(place.need("voltage"), 0.1, 100, "V from 0.1 to 100"),
            charge ? profile(*charge, power) : Profile{{{0, 0}}}};
}

int32_t sourceIndex(const JsonPlace& place, const PlantParams& params) {
    const std::string name = place.text();
    const auto found = std::ranges::find(params.sources, name, &PlantParams::Source::name);
    if (found == params.sources.end()) {
        std::vector<std::string> known;
        for (const auto& source : params.sources) {
            known.push_back(source.name);
        }
        place.fail("no source \"" + name + "\"" + common::suggestion(name, known));
    }
    return static_cast<int32_t>(found - params.sources.begin());
}

void readThreads(const JsonPlace& place, PlantParams& params) {
    for (const JsonPlace& thread : place.elements()) {
        thread.onlyMembers({"pid", "tid", "name", "source", "share"});
        const auto id = [&](std::string_view member) {
            return static_cast<int32_t>(thread.need(member).whole(1, kLargestId));
        };
        const JsonPlace name = thread.need("name");
        if (name.text().empty() || name.text().find_first_of("\t\n") != std::string::npos) {
            name.fail("expected a name without tabs and line ends");
        }
        params.threads.push_back({id("pid"), id("tid"), name.text(),
                                  sourceIndex(thread.need("source"), params),
                                  within(thread.need("share"), 0, 1, "a share from 0 to 1")});
    }
    if (params.threads.size() > kMostParts) {
        place.fail("expected at most " + std::to_string(kMostParts) + " threads");
    }
}

PlantParams::Gpu readGpu(const JsonPlace& place, const PlantParams& params) {
    place.onlyMembers({"source", "levels"});
    PlantParams::Gpu gpu{sourceIndex(place.need("source"), params), {}};
    const JsonPlace levels = place.need("levels");
    for (const JsonPlace& level : levels.elements()) {
        const auto pair = level.elements();
        if (pair.size() != 2) {
            level.fail("expected [clock, W at full load]");
        }
        const auto clock = static_cast<int32_t>(pair[0].whole(1, kLargestClock));
        const double watts = within(pair[1], 1e-3, kMostPower, "W from 0.001 to 1000");
        if (!gpu.levels.empty() &&
            (clock <= gpu.levels.back().clock || watts <= gpu.levels.back().power)) {
            level.fail("expected more of both than the level before");
        }
        gpu.levels.push_back({clock, watts});
    }
    if (gpu.levels.empty() || gpu.levels.size() > kMostParts) {
        levels.fail("expected 1 to " + std::to_string(kMostParts) + " levels");
    }
    return gpu;
}

PlantParams::Backlight readBacklight(const JsonPlace& place, const PlantParams& params) {
    place.onlyMembers({"source", "dark", "full", "maximum"});
    const JsonPlace full = place.need("full");
    const PlantParams::Backlight result{
            sourceIndex(place.need("source"), params), power(place.need("dark")), power(full),
            static_cast<int32_t>(place.need("maximum").whole(1, kLargestLevel))};
    if (result.full <= result.dark) {
        full.fail("expected more W than \"dark\"");
    }
    return result;
}

int32_t stepMs(const JsonPlace& place) {
    const int64_t step = place.milliseconds();
    if (step < 1 || step > 1000 || 1000 % step != 0) {
        place.fail("expected seconds of which whole steps make one second, 0.001 to 1");
    }
    return static_cast<int32_t>(step);
}

}  // namespace

PlantParams parsePlant(const JsonPlace& plant, const std::vector<ZoneSpec>& zones) {
    plant.onlyMembers({"step", "ambient", "nodes", "links", "sources", "zones", "battery",
                       "threads", "gpu", "backlight"});
    PlantParams params;
    if (const auto step = plant.find("step")) {
        params.stepMs = stepMs(*step);
    }
    params.ambient = profile(plant.need("ambient"), temperature);
    const JsonPlace nodes = plant.need("nodes");
    readNodes(nodes, params);
    readLinks(plant.need("links"), params);
    readSources(plant.need("sources"), params);
    readZones(plant.need("zones"), zones, params);
    if (const auto battery = plant.find("battery")) {
        params.battery = readBattery(*battery);
    }
    if (const auto threads = plant.find("threads")) {
        readThreads(*threads, params);
    }
    if (const auto gpu = plant.find("gpu")) {
        params.gpu = readGpu(*gpu, params);
    }
    if (const auto backlight = plant.find("backlight")) {
        params.backlight = readBacklight(*backlight, params);
    }
    if (const int32_t node = unstableNode(params); node >= 0) {
        nodes.need(params.nodes[static_cast<size_t>(node)].name)
                .fail("the step is too long for this capacity and its links: step × "
                      "Σ 1/(resistance × capacity) must stay below 1");
    }
    return params;
}

}  // namespace sim
