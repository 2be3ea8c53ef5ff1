// The command line of kelvoctl; what it asks of a phone is in the system tests.

#include <gtest/gtest.h>

#include <cctype>
#include <iterator>
#include <map>
#include <set>
#include <sstream>

#include "sim/tree/DeviceTree.h"
#include "support/Program.h"

namespace {

Program::Result kelvoctl(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"KELVO_BINDER=hub", KELVOCTL});
    arguments.insert(arguments.begin(), "KELVO_ROOT=" + std::string(getenv("KELVO_ROOT")));
    return Program::run("/usr/bin/env", arguments);
}

/** What bash offers for the last of these words, with a blank between. */
std::string completed(const std::string& words) {
    const std::string script = "source " COMPLETION "; COMP_WORDS=(kelvoctl " + words +
                               "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _kelvoctl;"
                               " echo -n \"${COMPREPLY[*]}\"";
    const Program::Result result = Program::run(
            "/usr/bin/env",
            {"KELVO_ROOT=" + std::string(getenv("KELVO_ROOT")), "bash", "-eu", "-c", script});
    EXPECT_EQ(result.status, 0) << words;
    EXPECT_EQ(result.err, "");
    return result.out;
}

}  // namespace

TEST(KelvoctlTest, saysAtOnceThatThereIsNoPhone) {
    for (const std::vector<std::string>& command : std::vector<std::vector<std::string>>{
                 {"list"}, {"ping"}, {"call", "4"}, {"dump"}, {"--json", "list"}}) {
        const Program::Result result = kelvoctl(command);
        EXPECT_EQ(result.status, 1) << command.back();
        EXPECT_TRUE(result.err.starts_with("kelvoctl: no phone to talk to: no binder driver: "))
                << result.err;
    }
}

TEST(KelvoctlTest, refusesWrongUsage) {
    for (const std::vector<std::string>& command :
         std::vector<std::vector<std::string>>{{},
                                               {"no-such-command"},
                                               {"call"},
                                               {"call", "x"},
                                               {"call", "4", "int32:2147483648"},
                                               {"call", "4", "int32:1x"},
                                               {"call", "4", "vector:1,"},
                                               {"call", "4", "vector:,1"},
                                               {"call", "4", "string"},
                                               {"call", "4", "float:1"},
                                               {"call", "4", "--reply", "int32,double"},
                                               {"setprop", "name"}}) {
        const Program::Result result = kelvoctl(command);
        EXPECT_EQ(result.status, 2) << testing::PrintToString(command);
        EXPECT_TRUE(result.err.starts_with("kelvoctl: ")) << result.err;
    }
}

TEST(KelvoctlTest, readsAndSetsPropertiesWithoutBinder) {
    EXPECT_EQ(kelvoctl({"getprop", "sys.none"}).out, "\n");
    EXPECT_EQ(kelvoctl({"--json", "getprop", "sys.none"}).out, "{\"value\":\"\"}\n");
    EXPECT_EQ(kelvoctl({"--json", "setprop", "sys.level", "-1"}).out, "{\"ok\":true}\n");
    EXPECT_EQ(sim::DeviceTree(getenv("KELVO_ROOT")).property("sys.level"), "-1");
    const Program::Result bad = kelvoctl({"setprop", "a/b", "1"});
    EXPECT_EQ(bad.status, 1);
    EXPECT_EQ(bad.err, "kelvoctl: the property cannot be set: a/b\n");
}

TEST(KelvoctlTest, isCompletedByBash) {
    sim::DeviceTree(getenv("KELVO_ROOT")).setProperty("persist.sys.abc", "1");
    const std::map<std::string, std::string> rows{
            {"st", "status"},
            {"--j", "--json"},
            {"--json w", "watch wifi"},
            {"heat f", "feed-start feed-stop"},
            {"bigdata -", "--help --peek"},
            {"watch --c", "--count"},
            {"watch --count ''", ""},
            {"call 4 --reply exception,i", "exception,int32"},
            {"call 4 v", "vector:"},
            {"setprop persist.sys.a", "persist.sys.abc"},
            {"ping ''", ""},
    };
    for (const auto& [words, offered] : rows) {
        EXPECT_EQ(completed(words), offered) << words;
    }
    // Each command of the program, and nothing else.
    std::istringstream help(kelvoctl({"--help"}).out);
    std::string commands;
    for (std::string line; std::getline(help, line);) {
        const bool isCommand = line.size() > 2 && line[0] == ' ' && line[1] == ' ' &&
                               std::islower(line[2]) != 0 && line.find("   ") != std::string::npos;
        commands += isCommand ? " " + line.substr(2, line.find(' ', 2) - 2) : "";
    }
    std::istringstream offered(completed("''"));
    std::multiset<std::string> known{std::istream_iterator<std::string>(offered), {}};
    std::istringstream listed(commands);
    const std::multiset<std::string> real{std::istream_iterator<std::string>(listed), {}};
    EXPECT_EQ(known, real);
}
