#include "sim/scenario/Trace.h"

#include <gtest/gtest.h>

#include "sim/scenario/TraceCheck.h"
#include "sim/tree/DeviceTree.h"
#include "sim/tree/TemporaryFolder.h"

namespace {

struct Trace : testing::Test {
    /** A reader of this text, on a phone with the zones a, b, twin and twin. */
    sim::TraceReader reader(const std::string& text) {
        mFiles.setNode("/trace.csv", text);
        return sim::TraceReader(mFolder.path() + "/trace.csv",
                                {{"a", 1}, {"b", 2}, {"twin", 3}, {"twin", 4}});
    }

    /** The rows as "time zone=value path=value", one a line; or the refusal. */
    std::string read(const std::string& text) {
        std::string rows;
        try {
            auto trace = reader(text);
            for (sim::TraceRow row; trace.next(row);) {
                rows += std::to_string(row.timeMs);
                for (const auto& zone : row.zones) {
                    rows += " " + std::to_string(zone.index) + "=" +
                            (zone.temp ? std::to_string(*zone.temp) : "null");
                }
                for (const auto& node : row.nodes) {
                    rows += " " + node.path + "=" + node.text.value_or("null");
                }
                rows += "\n";
            }
        } catch (const sim::ScenarioError& error) {
            return error.place() + ": " + error.problem();
        }
        return rows;
    }

    sim::TemporaryFolder mFolder{"kelvo-trace-"};
    sim::DeviceTree mFiles{mFolder.path()};
};

TEST_F(Trace, readsCellsByColumn) {
    EXPECT_EQ(read("t,b,/x/y,a\r\n0,20000,\"1,\"\"2\"\"\",\r\n\n0.25,,null,null\n1.2346,,,-5"),
              "0 1=20000 /x/y=1,\"2\"\n250 0=null /x/y=null\n1235 0=-5\n");
    EXPECT_EQ(read("t,a\n1,2\n1,2\n"), "1000 0=2\n1000 0=2\n");
    EXPECT_EQ(read("t,a,b\n1,2147483647,-999999999\n2,-2147483648,\"7\"\n"),
              "1000 0=2147483647 1=-999999999\n2000 0=-2147483648 1=7\n");
    const auto trace = reader("t,a\n");
    EXPECT_TRUE(trace.sets(0));
    EXPECT_FALSE(trace.sets(1));
}

TEST_F(Trace, warnsOfDegreesAndOfActionsAfterTheEnd) {
    reader("t,a,b\n0,33,-300\n5,34,100\n\n10,35000,20000\n15,35000,-20\n20,0,19000\n");
    sim::Scenario scenario;
    scenario.durationMs = 30500;
    scenario.zones = {{"a", {}}, {"b", {}}};
    scenario.trace = mFolder.path() + "/trace.csv";
    scenario.timeline = {{30500, {}}, {30501, {}}, {99000, {}}};
    auto warnings = sim::warningsOf(scenario, "s.json");
    EXPECT_EQ(sim::checkTrace(scenario, &warnings), 5);
    std::string text;
    for (const auto& [what, place] : warnings) {
        text += what + ": " + place + "\n";
    }
    EXPECT_EQ(text,
              "the action at 30.501 s comes after the end, at 30.5 s, and never happens (and 1 "
              "more): s.json: timeline\n"
              "the zone \"a\" is 33 m°C here, hardly meant: 33 °C are 33000 (and 1 more): " +
                      *scenario.trace +
                      ": line 2\n"
                      "the zone \"b\" is -20 m°C here, hardly meant: -20 °C are -20000: " +
                      *scenario.trace + ": line 6\n");
}

TEST_F(Trace, refusesWithLineAndReason) {
    const std::pair<const char*, const char*> cases[] = {
            {"", "line 1: expected a header that begins with the column t"},
            {"time,a\n", "line 1: expected a header that begins with the column t"},
            {"t,c\n", "line 1: the column \"c\" is no zone of the scenario, did you mean \"a\"?"},
            {"t,twin\n", "line 1: more than one zone has the type \"twin\""},
            {"t,a,a\n", "line 1: the column \"a\" stands twice in the header"},
            {"t,/x/../y\n", "line 1: the column \"/x/../y\" is no absolute path without \"..\""},
            {"t,a\n1,2\n0.999,2\n", "line 3: t goes back"},
            {"t,a\n\n-1,2\n", "line 3: t: expected seconds from 0 to 1000000000"},
            {"t,a\n1e3,2\n", "line 2: t: expected seconds from 0 to 1000000000"},
            {"t,a\n,2\n", "line 2: t: expected seconds from 0 to 1000000000"},
            {"t,a\n0\n", "line 2: expected 2 cells"},
            {"t;a\n0;1\n",
             "line 1: expected a header that begins with the column t; semicolons separate the "
             "cells here, write commas (and decimal points)"},
            {"t,a\n0;1\n",
             "line 2: t: expected seconds from 0 to 1000000000; cells are separated by commas, not "
             "semicolons"},
            {"t,a\n0,1,2,3\n",
             "line 2: expected 2 cells, found 4; a comma is no decimal sign here"},
            {"t,a\n0,1.5\n",
             "line 2: \"1.5\": expected a whole number of m°C, null or nothing; °C are written as "
             "1000 m°C each"},
            {"t,a\n0,\"1,5\"\n",
             "line 2: \"1,5\": expected a whole number of m°C, null or nothing; the decimal comma "
             "is not known here"},
            {"t,a\n0,2147483648\n",
             "line 2: \"2147483648\": expected a whole number of m°C, null or nothing"},
            {"t,/x\n0,\"a\n", "line 2: a quoted cell has no end in its line"},
    };
    for (const auto& [text, message] : cases) {
        EXPECT_EQ(read(text), message) << text;
    }
}

}  // namespace
