#include <android-base/unique_fd.h>
#include <gmock/gmock.h>
#include <poll.h>
#include <signal.h>
#include <sys/syscall.h>

#include <algorithm>
#include <sstream>

#include "sim/tree/DeviceTree.h"
#include "sim/tree/TemporaryFolder.h"
#include "support/Files.h"
#include "support/Program.h"

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

const std::string kHello = std::string(EXAMPLES) + "/hello/scenario.json";

constexpr int kLimitMs = 30000;

bool exists(pid_t pid) {
    return fs::exists("/proc/" + std::to_string(pid));
}

/** The events of a live run without their times, "kind" being part of each. */
std::vector<std::string> eventsOf(const std::string& root, const std::string& kind) {
    std::vector<std::string> events;
    std::istringstream lines(readFile(root + "/data/framework.jsonl"));
    for (std::string line; std::getline(lines, line);) {
        if (line.find(kind) != std::string::npos) {
            events.push_back(line.substr(line.find("\"event\"")));
        }
    }
    return events;
}

struct KelvosimLiveTest : testing::Test {
    /** Writes a scenario; its path. */
    std::string scenario(const std::string& text) const {
        const std::string path = mFolder.path() + "/scenario.json";
        std::ofstream(path) << text;
        return path;
    }
    const sim::TemporaryFolder mFolder{"kelvo-test-"};
    const std::string mRoot = mFolder.path() + "/phone";
};

}  // namespace

TEST_F(KelvosimLiveTest, showsWhatTheDaemonTellsAndLeavesNothingBehind) {
    const std::string folder = mFolder.path();
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        Program live("kelvosim", {"live", kHello}, folder);
        EXPECT_TRUE(live.readLine()->starts_with("The phone is in " + folder));
        EXPECT_TRUE(live.readLine()->starts_with("    KELVO_ROOT=" + folder));
        EXPECT_TRUE(live.readLine()->starts_with("phone time"));
        EXPECT_THAT(live.lineWith("    31.6   "), HasSubstr("  default   "));
        const std::vector<pid_t> processes = live.children();
        ASSERT_GE(processes.size(), 3u) << "hub, service manager and daemon";
        EXPECT_FALSE(fs::is_empty(folder));
        live.signal(number);
        EXPECT_EQ(live.wait().status, 0) << number;
        EXPECT_TRUE(std::ranges::none_of(processes, exists)) << number;
        EXPECT_TRUE(fs::is_empty(folder)) << number;
    }
}

TEST_F(KelvosimLiveTest, keepsAFolderOfItsUserAlone) {
    sim::DeviceTree(mRoot).setNode("/keep", "me");
    EXPECT_THAT(Program::run("kelvosim", {"live", kHello, "--root", mRoot}),
                ended(1, HasSubstr("not an empty folder")));
    EXPECT_TRUE(fs::exists(mRoot + "/keep"));
}

TEST_F(KelvosimLiveTest, performsTheFrameworksActionsThroughBinder) {
    const std::string actions = scenario(R"({"duration":7,
        "properties":{"persist.sys.kelvo.loglevel":"1"},
        "timeline":[
            {"t":0,"do":"listen","id":"a"},
            {"t":0,"do":"listen","id":"b"},
            {"t":1,"do":"transact","code":15,"args":[{"int32":3}]},
            {"t":2,"do":"listener_fails","id":"a","code":3,"count":1},
            {"t":2,"do":"listener_dies","id":"b"},
            {"t":3,"do":"transact","code":15,"args":[{"int32":4}]},
            {"t":4,"do":"listen","id":"b"},
            {"t":4,"do":"transact","code":15,"args":[{"int32":5}]},
            {"t":5,"do":"unlisten","id":"b"},
            {"t":5,"do":"transact","code":15,"args":[{"int32":6}]},
            {"t":6,"do":"transact","code":1,"args":[{"listener":"a"}],"reply":["int32"]},
            {"t":6,"do":"transact","code":3,"reply":[]},
            {"t":7,"do":"dump"}]})");
    // A daemon that is late: what was due meanwhile is not done all at once.
    const Program::Result run =
            Program::run("kelvosim", {"live", actions, "--root", mRoot, "--", "/bin/sh", "-c",
                                      std::string("sleep 5; exec ") + KELVOD});
    ASSERT_EQ(run.status, 0) << run.err;
    const auto heard = [&](const std::string& listener) {
        std::vector<std::string> statuses;
        for (const std::string& event : eventsOf(mRoot, "\"" + listener + "\",\"status\":")) {
            if (event.find(":-1}") == std::string::npos) {  // the greeting of a new listener
                statuses.push_back(event.substr(event.size() - 2, 1));
            }
        }
        return statuses;
    };
    EXPECT_THAT(heard("a"), ElementsAre("3", "4")) << "nothing after the call that failed";
    EXPECT_THAT(heard("b"), ElementsAre("3", "5")) << "nothing dead or unregistered";
    EXPECT_THAT(eventsOf(mRoot, "\"reply\""),
                ElementsAre(R"("event":"reply","code":1,"status":0,"values":[1]})",
                            R"("event":"reply","code":3,"status":-74,"values":[]})"));
    EXPECT_EQ(eventsOf(mRoot, "Git version:").size(), 1u);
    const std::string log = readFile(mRoot + "/data/kelvod.log");
    EXPECT_THAT(log, HasSubstr("binder(uid:1000) died!"));
    EXPECT_THAT(log, HasSubstr("already added")) << "the same binder, not a new one";
}

TEST_F(KelvosimLiveTest, saysThatTheDaemonKeepsItsPace) {
    EXPECT_THAT(Program::run("kelvosim", {"live", scenario(R"({"duration":1})"), "--speed", "4"}),
                ended(0, HasSubstr("runs 4 times as fast as the daemon's")));
}

TEST_F(KelvosimLiveTest, refusesCallsOfOtherUsers) {
    const std::string actions = scenario(R"({"duration":1,"timeline":[
        {"t":0,"do":"listen","id":"a","uid":10050},
        {"t":0.5,"do":"transact","code":11,"uid":10050}]})");
    EXPECT_THAT(Program::run("kelvosim", {"live", actions}),
                ended(1, HasSubstr("not as uid 10050: " + actions + ": timeline, at t = 0.500")));
}

TEST_F(KelvosimLiveTest, goesOnWhileTheDaemonRestartsOrHangs) {
    Program live("kelvosim", {"live", kHello, "--root", mRoot, "--", "/bin/sh", "-c",
                              std::string("while :; do ") + KELVOD + "; done"});
    EXPECT_NE(live.lineWith("    31.6   "), "");
    const pid_t shell = live.children().back();
    const auto daemon = [shell] { return Program::childrenOf(shell).at(0); };
    const pid_t first = daemon();
    kill(first, SIGSTOP);
    EXPECT_NE(live.lineWith("(kelvod does not answer)"), "");
    kill(first, SIGKILL);
    EXPECT_NE(live.lineWith("    31.6   "), "");
    const pid_t second = daemon();
    EXPECT_NE(first, second);
    const android::base::unique_fd end(static_cast<int>(syscall(SYS_pidfd_open, second, 0)));
    live.signal(SIGTERM);
    EXPECT_EQ(live.wait().status, 0);
    pollfd ended{end.get(), POLLIN, 0};
    EXPECT_EQ(poll(&ended, 1, kLimitMs), 1) << "also what kelvosim's child has started";
}
