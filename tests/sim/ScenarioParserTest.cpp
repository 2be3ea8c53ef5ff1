#include "sim/scenario/ScenarioParser.h"

#include <gtest/gtest.h>

#include "Refusal.h"
#include "support/Json.h"

namespace {

std::string refusal(const std::string& text) {
    return refusalOf([&] { sim::parseScenario(text, "s.json", "."); });
}

TEST(ScenarioParser, givesDefaultsToAbsentMembers) {
    const auto scenario = sim::parseScenario(R"({"duration": 1.5})", "s.json", ".");
    EXPECT_EQ(scenario.startNs, 1772352000LL * 1000000000);
    EXPECT_EQ(scenario.uptimeMs, 100000);
    EXPECT_EQ(scenario.durationMs, 1500);
    EXPECT_EQ(scenario.properties.at("persist.sys.kelvo.enable"), "1");
    EXPECT_EQ(scenario.services.size(), 6U);
    EXPECT_FALSE(scenario.config.main || scenario.trace || scenario.plant);
}

TEST(ScenarioParser, takesWhatIsGiven) {
    const auto scenario = sim::parseScenario(
            R"({"name": "n", "start": "1970-01-02T00:00:01.5Z", "uptime": 0, "duration": 1,
                "properties": {"persist.sys.kelvo.enable": "0"}, "services": ["health"],
                "nodes": {"/a/b": "x\n", "/a/c": {"hex": "00 fF"}, "/d": null},
                "zones": [{"type": "cpu", "temp": -40000}, {"type": "cpu", "temp": null}]})",
            "s.json", ".");
    EXPECT_EQ(scenario.startNs, 86401500000000);
    EXPECT_EQ(scenario.properties.at("persist.sys.kelvo.enable"), "0");
    EXPECT_EQ(scenario.services, std::set<std::string>{"health"});
    ASSERT_EQ(scenario.nodes.size(), 3U);
    EXPECT_EQ(scenario.nodes[1].text, std::string("\0\xff", 2));
    EXPECT_EQ(scenario.nodes[2].text, std::nullopt);
    EXPECT_EQ(scenario.zones[0].temp, -40000);
    EXPECT_EQ(scenario.zones[1].temp, std::nullopt);
}

TEST(ScenarioParser, refusesWithPlaceAndReason) {
    const std::pair<const char*, const char*> whole[] = {
            {"{\"duration\": 1,\n \"zones\": [}",
             "line 2, column 12: not JSON: Syntax error: value, object or array expected."},
            {"{}", ": the member \"duration\" is missing"},
            {"[]", ": expected an object"},
            {R"({"duration": 0})", "duration: expected seconds above 0"},
            {R"({"duration": -1})", "duration: expected seconds from 0 to 1000000000"},
            {R"({"duration": "1"})", "duration: expected seconds from 0 to 1000000000"},
    };
    for (const auto& [text, message] : whole) {
        EXPECT_EQ(refusal(text), message) << text;
    }
    const std::string kTime =
            "start: expected a time like '2026-03-01T08:00:00Z', from 1970 to 2200";
    const std::pair<std::string, std::string> members[] = {
            {"'zone': []", "zone: unknown member, did you mean 'zones'?"},
            {"'start': '2026-02-29T08:00:00Z'", kTime},
            {"'start': '2026-03-01 08:00:00'", kTime},
            {"'zones': [{'type': 'cpu', 'temp': 1.5}]",
             "zones[0].temp: expected a whole number of m°C or null"},
            {"'zones': [{'type': 'cpu'}]", "zones[0]: the member 'temp' is missing"},
            {"'nodes': {'/sys/../etc': 'x'}",
             "nodes./sys/../etc: expected an absolute path without '..'"},
            {"'nodes': {'sys': 'x'}", "nodes.sys: expected an absolute path without '..'"},
            {"'nodes': {'/a': {'hex': '0'}}",
             "nodes./a.hex: expected an even number of hexadecimal digits"},
            {"'nodes': {'/a': 'x', '/a/b': 'y'}", "nodes./a: '/a' is a folder: it holds '/a/b'"},
            {"'nodes': {'/data': null}",
             "nodes./data: '/data' is a folder: it holds '/data/zenta_lib/kelvo.conf'"},
            {"'timeline': [{'t': 1, 'do': 'nodes', 'set': {'/proc/shell-temp/x': ''}}]",
             "timeline[0].set./proc/shell-temp/x: '/proc/shell-temp' is a node, not a folder"},
            {"'properties': {'a/b': '1'}", "properties.a/b: this is no name of a property"},
            {"'properties': {'a': 1}", "properties.a: expected a text"},
            {"'services': ['helth']", "services[0]: no service 'helth', did you mean 'health'?"},
            {"'config': {'main': 'absent.json'}",
             "config.main: cannot read ./absent.json (No such file or directory)"},
    };
    for (const auto& [member, message] : members) {
        EXPECT_EQ(refusal(json("{'duration': 1, " + member + "}")), json(message));
    }
}

TEST(ScenarioParser, refusesPlantsThatCannotBe) {
    // of a good plant, instead, message
    const std::tuple<std::string, const char*, std::string> cases[] = {
            {": 10}", ": 0}", "nodes.a.capacity: expected J/K from 0.000001 to 1000000000"},
            {": 2}", ": 0.01}",
             "nodes.a: the step is too long for this capacity and its links: step × "
             "Σ 1/(resistance × capacity) must stay below 1"},
            {"'ambient']", "'b']", "links[0].between[1]: no plant node 'b', did you mean 'a'?"},
            {"[[0, 1]]", "[[5, 1], [4, 1]]", "sources.s.power[1][0]: time goes back"},
            {"'z':", "'y':", "zones.y: no zone, or more than one, of this type"},
            {"0.1", "0.3",
             "step: expected seconds of which whole steps make one second, 0.001 to 1"},
            {"'t'", "'t\\n'", "threads[0].name: expected a name without tabs and line ends"},
            {"'share': 1", "'share': 1.1", "threads[0].share: expected a share from 0 to 1"},
            {"{'source': 's'", "{'source': 't'", "gpu.source: no source 't', did you mean 's'?"},
            {"[2, 2]", "[2, 1]", "gpu.levels[1]: expected more of both than the level before"},
            {"[[1, 1], [2, 2]]", "[]", "gpu.levels: expected 1 to 1000 levels"},
            {"'step': 0.1", "'backlight': {'source': 't', 'dark': 0, 'full': 1, 'maximum': 255}",
             "backlight.source: no source 't', did you mean 's'?"},
            {"'step': 0.1", "'backlight': {'source': 's', 'dark': 1, 'full': 1, 'maximum': 255}",
             "backlight.full: expected more W than 'dark'"},
    };
    const std::string good =
            "{'duration': 1, 'zones': [{'type': 'z', 'temp': 1}], 'plant': {'step': 0.1,"
            "'ambient': 25, 'nodes': {'a': {'capacity': 10}},"
            "'links': [{'between': ['a', 'ambient'], 'resistance': 2}],"
            "'sources': {'s': {'node': 'a', 'power': [[0, 1]]}}, 'zones': {'z': {'node': 'a'}},"
            "'threads': [{'pid': 1, 'tid': 2, 'name': 't', 'source': 's', 'share': 1}],"
            "'gpu': {'source': 's', 'levels': [[1, 1], [2, 2]]}}}";
    EXPECT_EQ(refusal(json(good)), "");
    for (const auto& [member, instead, message] : cases) {
        std::string text = good;
        text.replace(text.find(member), member.size(), instead);
        EXPECT_EQ(refusal(json(text)), json("plant." + message));
    }
}

}  // namespace
