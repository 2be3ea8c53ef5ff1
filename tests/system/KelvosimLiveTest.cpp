#include <gtest/gtest.h>
#include <signal.h>

#include <algorithm>
#include <filesystem>

#include "sim/DeviceTree.h"
#include "support/Program.h"

namespace {

namespace fs = std::filesystem;

const std::string kHello = std::string(EXAMPLES) + "/hello/scenario.json";

bool exists(pid_t pid) {
    return fs::exists("/proc/" + std::to_string(pid));
}

}  // namespace

TEST(KelvosimLiveTest, showsWhatTheDaemonWrites) {
    const sim::TemporaryFolder folder("kelvo-test-");
    Program live("kelvosim", {"live", kHello}, folder.path());
    EXPECT_TRUE(live.readLine()->starts_with("The phone is in " + folder.path()));
    EXPECT_TRUE(live.readLine()->starts_with("    KELVO_ROOT=" + folder.path()));
    EXPECT_TRUE(live.readLine()->starts_with("phone time"));
    std::optional<std::string> line = live.readLine();
    while (line && line->find("nothing written yet") != std::string::npos) {
        line = live.readLine();
    }
    ASSERT_TRUE(line);
    EXPECT_NE(line->find("31.6 °C    front 31.6"), std::string::npos) << *line;
}

TEST(KelvosimLiveTest, leavesNoProcessAndNoFolderBehind) {
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        const sim::TemporaryFolder folder("kelvo-test-");
        Program live("kelvosim", {"live", kHello}, folder.path());
        for (int i = 0; i < 4; ++i) {
            ASSERT_TRUE(live.readLine());
        }
        const std::vector<pid_t> processes = live.children();
        ASSERT_EQ(processes.size(), 3u) << "hub, service manager and daemon";
        EXPECT_FALSE(fs::is_empty(folder.path()));
        live.signal(number);
        EXPECT_EQ(live.wait().status, 0) << number;
        EXPECT_TRUE(std::ranges::none_of(processes, exists)) << number;
        EXPECT_TRUE(fs::is_empty(folder.path())) << number;
    }
}

TEST(KelvosimLiveTest, endsWithTheScenarioAtTheSpeedItIsTold) {
    const Program::Result result = Program::run("kelvosim", {"live", kHello, "--speed", "60"});
    EXPECT_EQ(result.status, 0) << result.err;
}

TEST(KelvosimLiveTest, saysHowTheDaemonEnded) {
    const Program::Result result =
            Program::run("kelvosim", {"live", kHello, "--", "/no/such/program"});
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(result.err.starts_with("kelvosim: kelvod has ended with status 127")) << result.err;
}

TEST(KelvosimLiveTest, keepsAFolderOfItsUserAlone) {
    const sim::TemporaryFolder folder("kelvo-test-");
    sim::DeviceTree(folder.path()).setNode("/keep", "me");
    const Program::Result result =
            Program::run("kelvosim", {"live", kHello, "--root", folder.path()});
    EXPECT_EQ(result.status, 1);
    EXPECT_NE(result.err.find("not an empty folder"), std::string::npos) << result.err;
    EXPECT_TRUE(fs::exists(folder.path() + "/keep"));
}
