// The command line of kelvoctl; what it asks of a phone is in the system tests.

#include <gtest/gtest.h>

#include "sim/DeviceTree.h"
#include "support/Program.h"

namespace {

Program::Result kelvoctl(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"KELVO_BINDER=hub", KELVOCTL});
    arguments.insert(arguments.begin(), "KELVO_ROOT=" + std::string(getenv("KELVO_ROOT")));
    return Program::run("/usr/bin/env", arguments);
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
