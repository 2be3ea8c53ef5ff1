#include "sim/Trace.h"

#include <gtest/gtest.h>

#include <string>

#include "sim/DeviceTree.h"

namespace {

class Trace : public testing::Test {
  protected:
    /** A reader of this text, on a phone with the zones a, b, twin and twin. */
    sim::TraceReader reader(const std::string& text) {
        mFiles.setNode("/trace.csv", text);
        return sim::TraceReader(mFolder.path() + "/trace.csv",
                                {{"a", 1}, {"b", 2}, {"twin", 3}, {"twin", 4}});
    }

    std::string refusal(const std::string& text) {
        try {
            auto trace = reader(text);
            sim::TraceRow row;
            while (trace.next(row)) {
            }
        } catch (const sim::ScenarioError& error) {
            return error.place() + ": " + error.problem();
        }
        return "";
    }

    sim::TemporaryFolder mFolder{"kelvo-trace-"};
    sim::DeviceTree mFiles{mFolder.path()};
};

TEST_F(Trace, readsCellsByColumn) {
    auto trace = reader("t,b,/x/y,a\r\n0,20000,\"1,\"\"2\"\"\",\r\n\n0.25,,null,null\n1.2346,,,-5");
    sim::TraceRow row;
    ASSERT_TRUE(trace.next(row));
    EXPECT_EQ(row.timeMs, 0);
    ASSERT_EQ(row.zones.size(), 1U);
    EXPECT_EQ(row.zones[0].index, 1);
    EXPECT_EQ(row.zones[0].temp, 20000);
    ASSERT_EQ(row.nodes.size(), 1U);
    EXPECT_EQ(row.nodes[0].path, "/x/y");
    EXPECT_EQ(row.nodes[0].text, "1,\"2\"");
    ASSERT_TRUE(trace.next(row));
    EXPECT_EQ(row.timeMs, 250);
    EXPECT_EQ(row.nodes[0].text, std::nullopt);
    ASSERT_EQ(row.zones.size(), 1U);
    EXPECT_EQ(row.zones[0].temp, std::nullopt);
    ASSERT_TRUE(trace.next(row));
    EXPECT_EQ(row.timeMs, 1235);
    EXPECT_EQ(row.zones[0].temp, -5);
    EXPECT_TRUE(row.nodes.empty());
    EXPECT_FALSE(trace.next(row));
    EXPECT_TRUE(trace.sets(0));
    EXPECT_FALSE(trace.sets(2));
}

TEST_F(Trace, refusesWithLineAndReason) {
    const struct {
        const char* text;
        const char* message;
    } cases[] = {
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
            {"t,a\n0,1,2\n", "line 2: expected 2 cells"},
            {"t,a\n0,1.5\n", "line 2: \"1.5\": expected a whole number of m°C, null or nothing"},
            {"t,a\n0,2147483648\n",
             "line 2: \"2147483648\": expected a whole number of m°C, null or nothing"},
            {"t,/x\n0,\"a\n", "line 2: a quoted cell has no end in its line"},
            {"t,a\n1,2\n1,2\n", ""},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(refusal(row.text), row.message) << row.text;
    }
}

}  // namespace
