#include "sim/scenario/ExpectParser.h"

#include <gtest/gtest.h>

#include "Refusal.h"
#include "sim/scenario/ScenarioParser.h"
#include "support/Json.h"

namespace {

std::vector<sim::Expectation> parse(const std::string& expectation) {
    return sim::parseScenario(json("{'duration': 100, 'timeline': [{'t': 0, 'do': 'listen', "
                                   "'id': 'ui'}], 'expect': [" +
                                   expectation + "]}"),
                              "s.json", ".")
            .expect;
}

TEST(ExpectParser, readsWhatAndWhen) {
    const std::pair<const char*, const char*> cases[] = {
            {"{'by': 31.5, 'status': 2}", "by 31.5 s: status 2"},
            {"{'from': 5, 'by': 31, 'level': [1, 3]}", "from 5 s on by 31 s: level 1 to 3"},
            {"{'at': 100, 'scene': ['a', 'b'], 'shell': [36, 37.5]}",
             "at 100 s: scene a or b, shell 36 to 37.5 °C"},
            {"{'to': 9, 'heat_source': 'cpu'}", "from 0 to 9 s: heat source cpu"},
            {"{'never': {'shell_above': 43.0}}", "never: shell above 43 °C"},
            {"{'always': {'model_below': {'back': 41}, 'ambient': [-5, 5]}, 'from': 7}",
             "always from 7 to 100 s: ambient -5 to 5 °C, model back below 41 °C"},
            {"{'by': 9, 'notification': {'event': 'notify_thermal_broadcast', 'level': 1, "
             "'temp': [36000, 37000], 'listener': 'ui', 'count': [0, 3]}}",
             "by 9 s: notify_thermal_broadcast level 1 temp 36000 to 37000 to ui, 0 to 3 times"},
    };
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(parse(text).at(0).text, expected);
    }
    const auto never = parse("{'never': {'shell_above': 43.0}}").at(0);
    EXPECT_TRUE(never.conditions.at(0).range.holds(43001));
    EXPECT_FALSE(never.conditions.at(0).range.holds(43000));
    EXPECT_EQ(never.toMs, 100000);
}

TEST(ExpectParser, refusesWithPlaceAndReason) {
    const std::pair<std::string, std::string> cases[] = {
            {"'status': 2", ": when? expected 'at', 'by', 'from', 'to', 'never' or 'always'"},
            {"'at': 1", ": nothing is expected: name a figure or a notification"},
            {"'at': 101, 'status': 1", ".at: later than the end of the scenario, 100 s"},
            {"'from': 9, 'by': 8, 'status': 1", ".from: later than 'by'"},
            {"'at': 1, 'from': 1, 'status': 1", ".from: unknown member"},
            {"'at': 1, 'statuss': 1", ".statuss: unknown member, did you mean 'status'?"},
            {"'never': {'shell_over': 1}",
             ".never.shell_over: unknown member, did you mean 'shell_above'?"},
            {"'never': {'status': 1}, 'level': 2", ".level: unknown member, did you mean 'never'?"},
            {"'at': 1, 'shell': 36", ".shell: expected [least, most] in °C"},
            {"'at': 1, 'level': [3, 1]", ".level: expected [least, most], the lower one first"},
            {"'at': 1, 'shell_above': 43000", ".shell_above: expected °C from -1000 to 1000"},
            {"'at': 1, 'heat_source': 'gpuu'",
             ".heat_source: no heat source 'gpuu', did you mean 'gpu'?"},
            {"'at': 1, 'scene': []", ".scene: expected a text or an array of texts"},
            {"'at': 1, 'level': 1, 'notification': 'notify_thermal_status'",
             ".notification: a notification is expected by itself"},
            {"'by': 1, 'notification': {'event': 'notify_thermal_status', 'level': 1}",
             ".notification.level: unknown member"},
            {"'by': 1, 'notification': {'event': 'notify_thermal_status', 'listener': 'u'}",
             ".notification.listener: no action registers this listener, did you mean 'ui'?"},
            {"'always': {'notification': 'notify_thermal_status'}",
             ".always.notification: a notification is no state: it cannot be always"},
            {"'never': {'notification': {'event': 'notify_thermal_status', 'count': 1}}",
             ".never.notification.count: expected with 'at', 'by', 'from' or 'to' only"},
    };
    for (const auto& [text, message] : cases) {
        EXPECT_EQ(refusalOf([&text = text] { parse("{" + text + "}"); }),
                  json("expect[0]" + message));
    }
}

}  // namespace
