#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>

#include "sim/DeviceTree.h"
#include "support/Program.h"

namespace {

std::string example(const std::string& name) {
    return std::string(EXAMPLES) + "/" + name + "/scenario.json";
}

std::string read(const std::string& file) {
    std::ifstream stream(file);
    return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace

TEST(KelvosimReplayTest, givesTheSameEventsOnEveryRun) {
    for (const char* name : {"game", "charge", "hello"}) {
        const Program::Result first = Program::run("kelvosim", {"replay", example(name)});
        const Program::Result second = Program::run("kelvosim", {"replay", example(name)});
        EXPECT_EQ(first.status, 0) << first.err;
        EXPECT_EQ(first.out, second.out) << name;
        EXPECT_NE(first.out.find("\"event\":\"write\""), std::string::npos) << name;
        EXPECT_TRUE(first.out.ends_with("\"event\":\"end\"}\n")) << name;
    }
}

TEST(KelvosimReplayTest, heatsTheShellDuringTheGame) {
    std::istringstream lines(Program::run("kelvosim", {"replay", example("game")}).out);
    std::map<double, int32_t> front;  // s → m°C
    for (std::string line; std::getline(lines, line);) {
        double time = 0;
        int32_t temp = 0;
        constexpr char kFront[] =
                R"({"t":%lf,"event":"write","path":"/proc/shell-temp","text":"0 %d)";
        if (std::sscanf(line.c_str(), kFront, &time, &temp) == 2) {
            front[time] = temp;
        }
    }
    const auto at = [&](double time) { return std::prev(front.upper_bound(time))->second; };
    const int32_t before = at(20);
    EXPECT_GT(at(300), before + 3000) << "the game runs from 20 s to 560 s";
    EXPECT_GT(at(560), at(300) + 1000);
    EXPECT_LT(at(560), 50000) << "nobody could hold it";
    EXPECT_LT(std::abs(at(600) - at(560)), 1500) << "a shell is slow";
}

TEST(KelvosimReplayTest, sendsEventsAndLogWhereItIsTold) {
    const sim::TemporaryFolder folder("kelvo-test-");
    const std::string events = folder.path() + "/events";
    const std::string log = folder.path() + "/log";
    const Program::Result result = Program::run(
            "kelvosim",
            {"replay", example("hello"), "--events", events, "--log", log, "--loglevel", "1"});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(read(events).starts_with("{\"t\":0.000,\"event\":\"write\","));
    EXPECT_TRUE(read(log).starts_with("0.000 E kelvo main start\n"));
    EXPECT_NE(read(log).find(" I shell temp fitting module init...\n"), std::string::npos);
}

TEST(KelvosimReplayTest, writesOnlyTheEndWhenTheDaemonIsDisabled) {
    const sim::TemporaryFolder folder("kelvo-test-");
    const std::string scenario = folder.path() + "/scenario.json";
    std::ofstream(scenario) << R"({"name":"off","duration":3,
        "properties":{"persist.sys.kelvo.enable":"0"}})";
    EXPECT_EQ(Program::run("kelvosim", {"replay", scenario}).out,
              "{\"t\":3.000,\"event\":\"end\"}\n");
}
