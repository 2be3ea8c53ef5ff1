#include "sim/scenario/TimelineParser.h"

#include <gtest/gtest.h>

#include "Refusal.h"
#include "sim/scenario/ScenarioParser.h"
#include "support/Json.h"

namespace {

std::vector<sim::Action> parse(const std::string& actions) {
    const std::string text = R"({"duration": 9, "zones": [{"type": "cpu", "temp": 1},
        {"type": "twin", "temp": 1}, {"type": "twin", "temp": 1}], "timeline": [)" +
                             actions + "]}";
    return sim::parseScenario(text, "s.json", ".").timeline;
}

std::string refusal(const std::string& actions) {
    return refusalOf([&] { parse(actions); });
}

TEST(TimelineParser, sortsStablyByMillisecond) {
    const auto timeline = parse(R"({"t": 2, "do": "frames", "value": 1},
        {"t": 0.0014, "do": "frames", "value": 2}, {"t": 2, "do": "frames", "value": 3},
        {"t": 0.001, "do": "frames", "value": 4})");
    std::string order;
    for (const sim::Action& action : timeline) {
        order += std::to_string(std::get<sim::Frames>(action.deed).value);
    }
    EXPECT_EQ(order, "2413");
    EXPECT_EQ(timeline[0].timeMs, 1);
}

TEST(TimelineParser, readsTransactionsWhole) {
    const auto timeline = parse(R"({"t": 0, "do": "transact", "code": 6, "uid": 10001,
        "args": [{"int32": -5}, {"string": "s"}, {"vector": [1, 2]}, {"listener": "l"}],
        "reply": ["exception", "int32", "float", "string", "vector"]},
        {"t": 0, "do": "transact", "code": 11})");
    const auto& call = std::get<sim::Transact>(timeline[0].deed);
    EXPECT_EQ(call.code, 6U);
    EXPECT_EQ(call.uid, 10001U);
    EXPECT_EQ(std::get<int32_t>(call.args[0]), -5);
    EXPECT_EQ(std::get<std::string>(call.args[1]), "s");
    EXPECT_EQ(std::get<std::vector<int32_t>>(call.args[2]), (std::vector<int32_t>{1, 2}));
    EXPECT_EQ(std::get<sim::ListenerArgument>(call.args[3]).id, "l");
    using enum sim::ReplyType;
    EXPECT_EQ(call.reply, (std::vector{Exception, Int32, Float, String, Vector}));
    const auto& bare = std::get<sim::Transact>(timeline[1].deed);
    EXPECT_EQ(bare.reply, std::nullopt);
    EXPECT_EQ(bare.uid, 1000U);
}

TEST(TimelineParser, readsEveryOtherAction) {
    const auto timeline = parse(R"(
        {"t": 0, "do": "zones", "set": {"cpu": null}},
        {"t": 0, "do": "nodes", "set": {"/a": null, "/b": "x"}},
        {"t": 0, "do": "property", "set": {"a.b": "c"}},
        {"t": 0, "do": "listen", "id": "l"},
        {"t": 0, "do": "listener_fails", "id": "l", "code": 3, "count": 2},
        {"t": 0, "do": "listener_dies", "id": "l"},
        {"t": 0, "do": "unlisten", "id": "l"},
        {"t": 0, "do": "health", "usb": true},
        {"t": 0, "do": "battery_current", "value": -1200},
        {"t": 0, "do": "taskstats", "text": "1\t2\t3\tx\n"},
        {"t": 0, "do": "panel", "level": 255},
        {"t": 0, "do": "usage", "cpu": [{"energy": 5}, {"start": -9007199254740993, "end": 2}]},
        {"t": 0, "do": "usage_bytes", "hex": "0aFF"},
        {"t": 0, "do": "service", "name": "panel", "state": "up"},
        {"t": 0, "do": "dump", "args": ["-c"]})");
    ASSERT_EQ(timeline.size(), 15U);
    EXPECT_EQ(std::get<sim::SetZones>(timeline[0].deed).zones[0].temp, std::nullopt);
    EXPECT_EQ(std::get<sim::SetNodes>(timeline[1].deed).nodes[1].text, "x");
    EXPECT_EQ(std::get<sim::Listen>(timeline[3].deed).uid, 10050U);
    EXPECT_EQ(std::get<sim::ListenerFails>(timeline[4].deed).count, 2);
    EXPECT_TRUE(std::get<sim::Health>(timeline[7].deed).usb);
    EXPECT_FALSE(std::get<sim::Health>(timeline[7].deed).ac);
    EXPECT_EQ(std::get<sim::BatteryCurrent>(timeline[8].deed).value, -1200);
    EXPECT_EQ(std::get<sim::Panel>(timeline[10].deed).max, std::nullopt);
    EXPECT_EQ(std::get<sim::Panel>(timeline[10].deed).level, 255);
    const auto& records = std::get<sim::Usage>(timeline[11].deed).cpu;
    EXPECT_EQ(records[0].start, std::nullopt);
    EXPECT_EQ(records[1].start, -9007199254740993);
    EXPECT_EQ(std::get<sim::UsageBytes>(timeline[12].deed).bytes, "\x0a\xff");
    EXPECT_TRUE(std::get<sim::ServiceState>(timeline[13].deed).up);
    EXPECT_EQ(std::get<sim::Dump>(timeline[14].deed).args, std::vector<std::string>{"-c"});
}

TEST(TimelineParser, refusesWithPlaceAndReason) {
    EXPECT_EQ(refusal(R"({"do": "frames"})"), "timeline[0]: the member \"t\" is missing");
    EXPECT_EQ(refusal(R"({"t": -1, "do": "frames"})"),
              "timeline[0].t: expected seconds from 0 to 1000000000");
    const std::string kInt32 = "expected a whole number from -2147483648 to 2147483647";
    const std::pair<std::string, std::string> cases[] = {
            {"'frame'", ".do: no action 'frame', did you mean 'frames'?"},
            {"'frames', 'value': 2147483648", ".value: " + kInt32},
            {"'frames', 'value': 1, 'uid': 1", ".uid: unknown member"},
            {"'zones', 'set': {'cpu': 'hot'}", ".set.cpu: expected a whole number of m°C or null"},
            {"'zones', 'set': {'cpuu': 1}", ".set.cpuu: no zone of this type, did you mean 'cpu'?"},
            {"'zones', 'set': {'twin': 1}",
             ".set.twin: more than one zone has this type; set its node with 'nodes'"},
            {"'transact', 'code': 1, 'args': [{'int32': 1, 'string': ''}]",
             ".args[0]: expected one of {'int32': n}, {'string': s}, {'vector': […]}, "
             "{'listener': id}"},
            {"'transact', 'code': 1, 'args': [{'vector': [1, 1.5]}]",
             ".args[0].vector[1]: " + kInt32},
            {"'transact', 'code': 1, 'reply': ['int64']",
             ".reply[0]: expected one of 'int32', 'float', 'string', 'vector', "
             "'exception'"},
            {"'panel', 'level': 256", ".level: expected a whole number from 0 to 255"},
            {"'service', 'name': 'panel', 'state': 'off'", ".state: expected 'up' or 'down'"},
            {"'usage_bytes', 'hex': '0g'", ".hex: expected an even number of hexadecimal digits"},
            {"'nodes', 'set': {'/a/../b': ''}",
             ".set./a/../b: expected an absolute path without '..'"},
            {"'property', 'set': {'a b': ''}", ".set.a b: this is no name of a property"},
            {"'listen', 'id': ''", ".id: expected a text that is not empty"},
            {"'listener_fails', 'id': 'l', 'code': 3", ": the member 'count' is missing"},
            {"'health', 'ac': 1", ".ac: expected true or false"},
            {"'taskstats'", ": the member 'text' is missing"},
            {"'usage', 'wifi': [{'energy': 1.5}]",
             ".wifi[0].energy: expected a whole number from -9223372036854775808 to "
             "9223372036854775807"},
            {"'dump', 'args': [1]", ".args[0]: expected a text"},
            {"'dump', 'uid': -1", ".uid: expected a whole number from 0 to 2147483647"},
            {"'listener_dies', 'id': 'x'", ".id: no action registers this listener"},
    };
    for (const auto& [action, message] : cases) {
        EXPECT_EQ(refusal(json("{'t': 0, 'do': " + action + "}")), json("timeline[0]" + message));
    }
}

TEST(TimelineParser, refusesToRegisterALivingListenerTwice) {
    const std::string twice =
            R"({"t": 5, "do": "listen", "id": "l"}, {"t": 1, "do": "listen", "id": "l"})";
    EXPECT_EQ(refusal(twice), "timeline[0].id: this listener is registered and alive");
    for (const std::string between : {R"({"t": 2, "do": "unlisten", "id": "l"},)",
                                      R"({"t": 2, "do": "listener_dies", "id": "l"},)"}) {
        EXPECT_EQ(refusal(between + twice), "") << between;
    }
}

}  // namespace
