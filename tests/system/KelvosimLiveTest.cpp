#include <android-base/unique_fd.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "sim/tree/DeviceTree.h"
#include "sim/tree/TemporaryFolder.h"
#include "support/Program.h"

namespace {

namespace fs = std::filesystem;

const std::string kHello = std::string(EXAMPLES) + "/hello/scenario.json";

constexpr int kLimitMs = 30000;

bool exists(pid_t pid) {
    return fs::exists("/proc/" + std::to_string(pid));
}

/** The next line that holds the text; "" when none comes. */
std::string lineWith(Program& program, const std::string& text) {
    std::optional<std::string> line;
    do {
        line = program.readLine();
    } while (line && line->find(text) == std::string::npos);
    EXPECT_TRUE(line) << "no line with " << text;
    return line.value_or("");
}

std::string readFile(const std::string& path) {
    std::ifstream stream(path);
    return {std::istreambuf_iterator<char>(stream), {}};
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

}  // namespace

TEST(KelvosimLiveTest, showsWhatTheDaemonTells) {
    const sim::TemporaryFolder folder("kelvo-test-");
    Program live("kelvosim", {"live", kHello}, folder.path());
    EXPECT_TRUE(live.readLine()->starts_with("The phone is in " + folder.path()));
    EXPECT_TRUE(live.readLine()->starts_with("    KELVO_ROOT=" + folder.path()));
    EXPECT_TRUE(live.readLine()->starts_with("phone time"));
    EXPECT_NE(lineWith(live, "    31.6   ").find("  default   "), std::string::npos);
}

TEST(KelvosimLiveTest, leavesNoProcessAndNoFolderBehind) {
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        const sim::TemporaryFolder folder("kelvo-test-");
        Program live("kelvosim", {"live", kHello}, folder.path());
        for (int i = 0; i < 4; ++i) {
            ASSERT_TRUE(live.readLine());
        }
        const std::vector<pid_t> processes = live.children();
        ASSERT_GE(processes.size(), 3u) << "hub, service manager and daemon";
        EXPECT_FALSE(fs::is_empty(folder.path()));
        live.signal(number);
        EXPECT_EQ(live.wait().status, 0) << number;
        EXPECT_TRUE(std::ranges::none_of(processes, exists)) << number;
        EXPECT_TRUE(fs::is_empty(folder.path())) << number;
    }
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

TEST(KelvosimLiveTest, performsTheFrameworksActionsThroughBinder) {
    const sim::TemporaryFolder folder("kelvo-test-");
    const std::string root = folder.path() + "/phone";
    const std::string scenario = folder.path() + "/scenario.json";
    std::ofstream(scenario) << R"({"duration":7,
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
            {"t":7,"do":"dump"}]})";
    const Program::Result run =
            Program::run("kelvosim", {"live", scenario, "--root", root, "--speed", "4"});
    ASSERT_EQ(run.status, 0) << run.err;
    const auto heard = [&](const std::string& listener) {
        std::vector<std::string> statuses;
        for (const std::string& event : eventsOf(root, "\"" + listener + "\",\"status\":")) {
            if (event.find(":-1}") == std::string::npos) {  // the greeting of a new listener
                statuses.push_back(event.substr(event.size() - 2, 1));
            }
        }
        return statuses;
    };
    EXPECT_THAT(heard("a"), testing::ElementsAre("3", "4")) << "nothing after the call that failed";
    EXPECT_THAT(heard("b"), testing::ElementsAre("3", "5")) << "nothing dead or unregistered";
    EXPECT_THAT(eventsOf(root, "\"reply\""),
                testing::ElementsAre(R"("event":"reply","code":1,"status":0,"values":[1]})",
                                     R"("event":"reply","code":3,"status":-74,"values":[]})"));
    EXPECT_EQ(eventsOf(root, "Git version:").size(), 1u);
    const std::string log = readFile(root + "/data/kelvod.log");
    EXPECT_NE(log.find("binder(uid:1000) died!"), std::string::npos) << log;
    EXPECT_NE(log.find("already added"), std::string::npos) << "the same binder, not a new one";
}

TEST(KelvosimLiveTest, refusesCallsOfOtherUsers) {
    const sim::TemporaryFolder folder("kelvo-test-");
    const std::string scenario = folder.path() + "/scenario.json";
    std::ofstream(scenario) << R"({"duration":1,"timeline":[
        {"t":0,"do":"listen","id":"a","uid":10050},
        {"t":0.5,"do":"transact","code":11,"uid":10050}]})";
    const Program::Result run = Program::run("kelvosim", {"live", scenario});
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.err.find("not as uid 10050: " + scenario + ": timeline, at t = 0.500"),
              std::string::npos)
            << run.err;
}

TEST(KelvosimLiveTest, goesOnWhileTheDaemonRestartsOrHangs) {
    const sim::TemporaryFolder folder("kelvo-test-");
    Program live("kelvosim", {"live", kHello, "--root", folder.path() + "/phone", "--", "/bin/sh",
                              "-c", std::string("while :; do ") + KELVOD + "; done"});
    lineWith(live, "    31.6   ");
    const pid_t shell = live.children().back();
    const auto daemon = [shell] { return Program::childrenOf(shell).at(0); };
    const pid_t first = daemon();
    kill(first, SIGSTOP);
    lineWith(live, "(kelvod does not answer)");
    kill(first, SIGKILL);
    lineWith(live, "    31.6   ");
    const pid_t second = daemon();
    EXPECT_NE(first, second);
    const android::base::unique_fd end(static_cast<int>(syscall(SYS_pidfd_open, second, 0)));
    live.signal(SIGTERM);
    EXPECT_EQ(live.wait().status, 0);
    pollfd ended{end.get(), POLLIN, 0};
    EXPECT_EQ(poll(&ended, 1, kLimitMs), 1) << "also what kelvosim's child has started";
}
