#include "sim/scenario/ScenarioParser.h"

#include <errno.h>
#include <string.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "sim/scenario/ExpectParser.h"
#include "sim/scenario/FolderCheck.h"
#include "sim/scenario/JsonPlace.h"
#include "sim/scenario/NodeParser.h"
#include "sim/scenario/PlantParser.h"
#include "sim/scenario/StartTime.h"
#include "sim/scenario/TimelineParser.h"
#include "sim/scenario/Trace.h"

namespace sim {

namespace {

namespace fs = std::filesystem;

constexpr size_t kMostZones = 10000;
constexpr std::string_view kDefaultStart = "2026-03-01T08:00:00Z";

std::string hostPath(const std::string& folder, const JsonPlace& name) {
    if (name.text().empty()) {
        name.fail("expected the name of a file");
    }
    return (fs::path(folder) / name.text()).string();
}

std::optional<std::string> readFile(const std::string& path) {
    if (fs::is_directory(path)) {
        errno = EISDIR;
        return std::nullopt;
    }
    std::ifstream file(path, std::ios::binary);
    std::string text(std::istreambuf_iterator<char>(file), {});
    return file.is_open() && !file.bad() ? std::optional(std::move(text)) : std::nullopt;
}

std::optional<std::string> parseConfigFile(const JsonPlace& config, std::string_view name,
                                           const std::string& folder) {
    const auto member = config.find(name);
    if (!member) {
        return std::nullopt;
    }
    const std::string path = hostPath(folder, *member);
    auto text = readFile(path);
    if (!text) {
        member->fail("cannot read " + path + " (" + strerror(errno) + ")");
    }
    return text;
}

int64_t parseStart(const JsonPlace& start) {
    const auto time = start.isString() ? parseStartTime(start.text()) : std::nullopt;
    if (!time) {
        start.fail("expected a time like \"2026-03-01T08:00:00Z\", from 1970 to 2200");
    }
    return *time;
}

std::vector<ZoneSpec> parseZoneSpecs(const JsonPlace& zones) {
    std::vector<ZoneSpec> result;
    for (const JsonPlace& zone : zones.elements()) {
        zone.onlyMembers({"type", "temp"});
        result.push_back({zone.need("type").text(), parseZoneTemp(zone.need("temp"))});
    }
    if (result.size() > kMostZones) {
        zones.fail("expected at most " + std::to_string(kMostZones) + " zones");
    }
    return result;
}

std::set<std::string> parseServices(const JsonPlace& services) {
    std::set<std::string> result;
    for (const JsonPlace& name : services.elements()) {
        result.insert(parseServiceName(name));
    }
    return result;
}

HealthHal parseHealthHal(const JsonPlace& kind) {
    if (!kind.isString() || (kind.text() != "aidl" && kind.text() != "hidl")) {
        kind.fail("expected \"aidl\" or \"hidl\"");
    }
    return kind.text() == "aidl" ? HealthHal::Aidl : HealthHal::Hidl;
}

/** Opens the trace for its header, of which `columns` gets the nodes; what stands in its rows is
 * seen when they are read. */
std::string parseTrace(const JsonPlace& trace, const Scenario& scenario, const std::string& folder,
                       std::vector<std::string>& columns) {
    std::string path = hostPath(folder, trace);
    const TraceReader reader(path, scenario.zones);
    if (scenario.plant) {
        for (const auto& zone : scenario.plant->zones) {
            if (reader.sets(zone.index)) {
                trace.fail("the plant drives the zone \"" + zone.type + "\" of this trace");
            }
        }
    }
    columns = reader.nodes();
    return path;
}

void parseClocks(const JsonPlace& root, Scenario& scenario) {
    const auto start = root.find("start");
    scenario.startNs = start ? parseStart(*start) : *parseStartTime(kDefaultStart);
    if (const auto uptime = root.find("uptime")) {
        scenario.uptimeMs = uptime->milliseconds();
    }
    const JsonPlace duration = root.need("duration");
    scenario.durationMs = duration.milliseconds();
    if (scenario.durationMs == 0) {
        duration.fail("expected seconds above 0");
    }
}

void parseDevice(const JsonPlace& root, const std::string& folder, Scenario& scenario) {
    if (const auto properties = root.find("properties")) {
        for (auto& [name, value] : parseProperties(*properties)) {
            scenario.properties[name] = value;
        }
    }
    scenario.properties.try_emplace("persist.sys.kelvo.enable", "1");
    if (const auto nodes = root.find("nodes")) {
        scenario.nodes = parseNodes(*nodes);
    }
    if (const auto zones = root.find("zones")) {
        scenario.zones = parseZoneSpecs(*zones);
    }
    if (const auto config = root.find("config")) {
        config->onlyMembers({"main", "data", "platform"});
        scenario.config = {parseConfigFile(*config, "main", folder),
                           parseConfigFile(*config, "data", folder),
                           parseConfigFile(*config, "platform", folder)};
    }
    if (const auto services = root.find("services")) {
        scenario.services = parseServices(*services);
    }
    if (const auto kind = root.find("health_hal")) {
        scenario.healthHal = parseHealthHal(*kind);
    }
}

void parseCourse(const JsonPlace& root, const std::string& folder, Scenario& scenario) {
    if (const auto plant = root.find("plant")) {
        scenario.plant = parsePlant(*plant, scenario.zones);
    }
    std::vector<std::string> columns;
    if (const auto trace = root.find("trace")) {
        scenario.trace = parseTrace(*trace, scenario, folder, columns);
    }
    if (const auto timeline = root.find("timeline")) {
        scenario.timeline = parseTimeline(*timeline, scenario.zones);
    }
    checkFolders(root, scenario, columns);
}

}  // namespace

Scenario parseScenario(std::string_view text, const std::string& file, const std::string& folder) {
    const Json::Value document = parseJson(text, file);
    const JsonPlace root(document, file);
    root.onlyMembers({"name", "start", "uptime", "duration", "properties", "nodes", "zones",
                      "config", "services", "health_hal", "trace", "plant", "timeline", "expect"});
    Scenario scenario;
    if (const auto name = root.find("name")) {
        scenario.name = name->text();
    }
    parseClocks(root, scenario);
    parseDevice(root, folder, scenario);
    parseCourse(root, folder, scenario);
    if (const auto expect = root.find("expect")) {
        scenario.expect = parseExpectations(*expect, scenario);
    }
    return scenario;
}

Scenario loadScenario(const std::string& file) {
    const auto text = readFile(file);
    if (!text) {
        throw ScenarioError(std::string("cannot read the scenario (") + strerror(errno) + ")", file,
                            "");
    }
    return parseScenario(*text, file, fs::path(file).parent_path().string());
}

}  // namespace sim
