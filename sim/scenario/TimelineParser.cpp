#include "sim/scenario/TimelineParser.h"

#include <algorithm>
#include <limits>

#include "sim/scenario/ListenerCheck.h"
#include "sim/scenario/NodeParser.h"
#include "sim/scenario/TransactParser.h"

#include "common/NearestName.h"

namespace sim {

namespace {

constexpr int64_t kInt32Max = std::numeric_limits<int32_t>::max();
constexpr int64_t kInt64Min = std::numeric_limits<int64_t>::min();
constexpr int64_t kInt64Max = std::numeric_limits<int64_t>::max();
constexpr int64_t kByteMax = 255;

using Zones = std::vector<ZoneSpec>;

int32_t zoneIndex(const JsonPlace& place, const std::string& type, const Zones& zones) {
    if (const auto index = uniqueZone(zones, type)) {
        return *index;
    }
    const std::vector<std::string> known = zoneTypes(zones);
    if (std::ranges::find(known, type) != known.end()) {
        place.fail("more than one zone has this type; set its node with \"nodes\"");
    }
    place.fail("no zone of this type" + common::suggestion(type, known));
}

Deed parseZones(const JsonPlace& action, const Zones& zones) {
    action.onlyMembers({"t", "do", "set"});
    SetZones result;
    for (const auto& [type, temp] : action.need("set").members()) {
        result.zones.push_back({zoneIndex(temp, type, zones), parseZoneTemp(temp)});
    }
    return result;
}

Deed parseSetNodes(const JsonPlace& action, const Zones&) {
    action.onlyMembers({"t", "do", "set"});
    return SetNodes{parseNodes(action.need("set"))};
}

Deed parseSetProperties(const JsonPlace& action, const Zones&) {
    action.onlyMembers({"t", "do", "set"});
    return SetProperties{parseProperties(action.need("set"))};
}

Deed parseCall(const JsonPlace& action, const Zones&) {
    return parseTransact(action);
}

Deed parseListen(const JsonPlace& action, const Zones&) {
    action.onlyMembers({"t", "do", "id", "uid"});
    return Listen{listenerId(action.need("id")), uidOr(action, Listen{}.uid)};
}

Deed parseUnlisten(const JsonPlace& action, const Zones&) {
    action.onlyMembers({"t", "do", "id"});
    return Unlisten{listenerId(action.need("id"))};
}

Deed parseListenerDies(const JsonPlace& action, const Zones&) {
    action.onlyMembers({"t", "do", "id"});
    return ListenerDies{listenerId(action.need("id"))};
}

Deed parseListenerFails(const JsonPlace& action, const Zones&) {
    action.onlyMembers({"t", "do", "id", "code", "count"});
    return ListenerFails{listenerId(action.need("id")), unsigned31(action.need("code")),
                         static_cast<int32_t>(action.need("count").whole(0, kInt32Max))};
}

Deed parseHealth(const JsonPlace& action, const Zones&) {
    action.onlyMembers({"t", "do", "ac", "usb", "wireless"});
    const auto flag = [&](std::string_view name) {
        const auto member = action.find(name);
        return member && member->boolean();
    };
    return Health{flag("ac"), flag("usb"), flag("wireless")};
}

Deed parseBatteryCurrent(const JsonPlace& action, const Zones&) {
    action.onlyMembers({"t", "do", "value"});
    return BatteryCurrent{action.need("value").int32()};
}

Deed parseTaskStats(const JsonPlace& action, const Zones&) {
    action.onlyMembers({"t", "do", "text"});
    return TaskStats{action.need("text").text()};
}

Deed parsePanel(const JsonPlace& action, const Zones&) {
    action.onlyMembers({"t", "do", "max", "level"});
    const auto byte = [&](std::string_view name) -> std::optional<int32_t> {
        const auto member = action.find(name);
        return member ? std::optional(static_cast<int32_t>(member->whole(0, kByteMax)))
                      : std::nullopt;
    };
    return Panel{byte("max"), byte("level")};
}

Deed parseFrames(const JsonPlace& action, const Zones&) {
    action.onlyMembers({"t", "do", "value"});
    return Frames{action.need("value").int32()};
}

std::vector<UsageRecord> parseUsageRecords(const JsonPlace& action, std::string_view module) {
    std::vector<UsageRecord> result;
    const auto records = action.find(module);
    if (!records) {
        return result;
    }
    for (const JsonPlace& record : records->elements()) {
        record.onlyMembers({"start", "end", "energy"});
        const auto figure = [&](std::string_view name) -> std::optional<int64_t> {
            const auto member = record.find(name);
            return member ? std::optional(member->whole(kInt64Min, kInt64Max)) : std::nullopt;
        };
        result.push_back({figure("start"), figure("end"), figure("energy")});
    }
    return result;
}

Deed parseUsage(const JsonPlace& action, const Zones&) {
    action.onlyMembers({"t", "do", "cpu", "wifi", "cellular", "display"});
    return Usage{parseUsageRecords(action, "cpu"), parseUsageRecords(action, "wifi"),
                 parseUsageRecords(action, "cellular"), parseUsageRecords(action, "display")};
}

Deed parseUsageBytes(const JsonPlace& action, const Zones&) {
    action.onlyMembers({"t", "do", "hex"});
    return UsageBytes{action.need("hex").hexBytes()};
}

Deed parseService(const JsonPlace& action, const Zones&) {
    action.onlyMembers({"t", "do", "name", "state"});
    const JsonPlace state = action.need("state");
    if (!state.isString() || (state.text() != "up" && state.text() != "down")) {
        state.fail("expected \"up\" or \"down\"");
    }
    return ServiceState{parseServiceName(action.need("name")), state.text() == "up"};
}

Deed parseDump(const JsonPlace& action, const Zones&) {
    action.onlyMembers({"t", "do", "args", "uid"});
    Dump result;
    result.uid = uidOr(action, result.uid);
    if (const auto args = action.find("args")) {
        for (const JsonPlace& element : args->elements()) {
            result.args.push_back(element.text());
        }
    }
    return result;
}

using Parser = Deed (*)(const JsonPlace&, const Zones&);

const std::map<std::string, Parser>& parsers() {
    static const std::map<std::string, Parser> kParsers{{"zones", parseZones},
                                                        {"nodes", parseSetNodes},
                                                        {"property", parseSetProperties},
                                                        {"transact", parseCall},
                                                        {"listen", parseListen},
                                                        {"unlisten", parseUnlisten},
                                                        {"listener_dies", parseListenerDies},
                                                        {"listener_fails", parseListenerFails},
                                                        {"health", parseHealth},
                                                        {"battery_current", parseBatteryCurrent},
                                                        {"taskstats", parseTaskStats},
                                                        {"panel", parsePanel},
                                                        {"frames", parseFrames},
                                                        {"usage", parseUsage},
                                                        {"usage_bytes", parseUsageBytes},
                                                        {"service", parseService},
                                                        {"dump", parseDump}};
    return kParsers;
}

Action parseAction(const JsonPlace& action, const Zones& zones) {
    const JsonPlace kind = action.need("do");
    const auto parser = parsers().find(kind.text());
    if (parser == parsers().end()) {
        std::vector<std::string> known;
        for (const auto& [name, unused] : parsers()) {
            known.push_back(name);
        }
        kind.fail("no action \"" + kind.text() + "\"" + common::suggestion(kind.text(), known));
    }
    return {action.need("t").milliseconds(), parser->second(action, zones)};
}

}  // namespace

std::vector<Action> parseTimeline(const JsonPlace& timeline, const Zones& zones) {
    std::vector<std::pair<Action, JsonPlace>> placed;
    for (const JsonPlace& element : timeline.elements()) {
        placed.emplace_back(parseAction(element, zones), element);
    }
    std::ranges::stable_sort(placed, {}, [](const auto& entry) { return entry.first.timeMs; });
    checkListeners(placed);
    std::vector<Action> result;
    result.reserve(placed.size());
    for (auto& [action, place] : placed) {
        result.push_back(std::move(action));
    }
    return result;
}

}  // namespace sim
