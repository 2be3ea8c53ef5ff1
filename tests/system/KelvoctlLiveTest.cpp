// kelvoctl against a simulated phone with the daemon on it, all of them processes.

#include <gtest/gtest.h>
#include <signal.h>

#include <algorithm>
#include <filesystem>
#include <regex>

#include "sim/tree/TemporaryFolder.h"
#include "support/Program.h"

namespace {

namespace fs = std::filesystem;

class KelvoctlLiveTest : public testing::Test {
  protected:
    KelvoctlLiveTest() { startPhone({}); }
    void startPhone(const std::vector<std::string>& more) {
        std::vector<std::string> command{"live", std::string(EXAMPLES) + "/hello/scenario.json",
                                         "--root", mRoot};
        command.insert(command.end(), more.begin(), more.end());
        mPhone.emplace("kelvosim", command);
        // Until the daemon has answered with a temperature.
        for (std::string line; line.find("    31.6   ") == std::string::npos;) {
            line = mPhone->readLine().value_or("    31.6   ");
        }
    }

    /** As another user when `user` holds the command for that. */
    Program::Result kelvoctl(const std::vector<std::string>& arguments,
                             std::vector<std::string> user = {}) const {
        user.insert(user.begin(), "KELVO_ROOT=" + mRoot);
        user.push_back(KELVOCTL);
        user.insert(user.end(), arguments.begin(), arguments.end());
        return Program::run("/usr/bin/env", user);
    }
    std::string out(const std::vector<std::string>& arguments) const {
        return kelvoctl(arguments).out;
    }

    /**
     * With 0 for the status -1: the daemon's first temperature may come before its thresholds are
     * loaded, and then there is no status until the next whole degree.
     */
    static std::string anyStatus(const std::string& text) {
        return std::regex_replace(text, std::regex("-1"), "0");
    }

    const sim::TemporaryFolder mFolder{"kelvo-test-"};
    const std::string mRoot = mFolder.path() + "/phone";
    std::optional<Program> mPhone;
};

}  // namespace

TEST_F(KelvoctlLiveTest, findsAndCallsTheDaemon) {
    EXPECT_NE(out({"list"}).find("kelvo\nmanager\n"), std::string::npos);
    EXPECT_NE(out({"--json", "list"}).find("\"kelvo\",\"manager\""), std::string::npos);
    EXPECT_EQ(out({"--json", "ping"}), "{\"alive\":true}\n");
    EXPECT_EQ(out({"ping", "manager"}), "manager is alive\n");
    EXPECT_EQ(anyStatus(out({"--json", "call", "4", "--reply", "exception,int32,string"})),
              "{\"status\":0,\"values\":[0,0,null]}\n");
    EXPECT_EQ(out({"call", "22", "--reply", "int32,int32"}), "31650\n1\n");
    EXPECT_EQ(out({"getprop", "persist.sys.kelvo.enable"}), "1\n");
    EXPECT_TRUE(out({"dump", "config"}).starts_with("getKelvoConfig result:{"));
    EXPECT_NE(out({"dump"}).find("ThrottlingLevel:0\n"), std::string::npos);
    const Program::Result unknown = kelvoctl({"call", "3"});
    EXPECT_EQ(unknown.status, 1);
    EXPECT_EQ(unknown.err, "kelvoctl: the service does not know this call: 3\n");
    const Program::Result absent = kelvoctl({"ping", "absent"});
    EXPECT_EQ(absent.status, 1);
    EXPECT_EQ(absent.err, "kelvoctl: no such service: absent\n");
    mPhone->signal(SIGTERM);
    EXPECT_EQ(mPhone->wait().status, 0);
}

TEST_F(KelvoctlLiveTest, showsWhatTheDaemonKnowsAndTells) {
    EXPECT_NE(out({"--json", "status"}).find("\"temp\":31650,\"type\":1,\"ambient\":null,"),
              std::string::npos);
    EXPECT_EQ(anyStatus(out({"--json", "watch", "--count", "2"})),
              "{\"event\":\"notify_thermal_status\",\"status\":0}\n"
              "{\"event\":\"notify_thermal_broadcast\",\"level\":0,\"temp\":31650}\n");
    EXPECT_EQ(out({"--json", "set-config", "--hold", "1,2"}), "{\"result\":0}\n");
    EXPECT_EQ(out({"--json", "zones"}), "{\"temps\":null}\n");
    EXPECT_EQ(out({"--json", "screen", "0"}), "{\"ok\":true}\n");
    EXPECT_EQ(out({"--json", "heat", "report"}), "{}\n");
    EXPECT_EQ(kelvoctl({"heat"}).status, 2);
}

TEST_F(KelvoctlLiveTest, tellsWhoMayNotCall) {
    const std::vector<std::string> app{"setpriv", "--reuid=10050", "--regid=10050",
                                       "--clear-groups"};
    if (kelvoctl({"--version"}, app).status != 0) {
        GTEST_SKIP() << "cannot run programs as another user";
    }
    for (const std::string& folder : {mFolder.path(), mRoot}) {
        fs::permissions(folder, fs::perms::others_exec, fs::perm_options::add);
    }
    EXPECT_EQ(kelvoctl({"ping"}, app).out, "kelvo is alive\n");
    EXPECT_EQ(kelvoctl({"dump"}, app).out, "");
    const Program::Result refused = kelvoctl({"--json", "call", "11"}, app);
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.out, "{\"status\":-1,\"values\":[]}\n");
    EXPECT_EQ(refused.err, "kelvoctl: permission denied: 11\n");
    EXPECT_EQ(kelvoctl({"reload"}, app).err, "kelvoctl: permission denied: RELOAD_CONFIG\n");
    EXPECT_EQ(out({"call", "11"}), "ok\n");
}

TEST_F(KelvoctlLiveTest, noticesThatTheDaemonOrThePhoneIsGone) {
    pid_t daemon = 0;
    for (const pid_t child : mPhone->children()) {
        daemon = std::max(daemon, child);  // started last
    }
    kill(daemon, SIGKILL);
    const Program::Result phone = mPhone->wait();
    EXPECT_EQ(phone.status, 1);
    EXPECT_NE(phone.err.find("kelvosim: kelvod has ended with signal 9"), std::string::npos);
    const Program::Result gone = kelvoctl({"list"});
    EXPECT_EQ(gone.status, 1);
    EXPECT_NE(gone.err.find("kelvoctl: no phone to talk to: "), std::string::npos) << gone.err;
}

TEST_F(KelvoctlLiveTest, watchesTheNextDaemonWhenOneDies) {
    mPhone.reset();
    fs::remove_all(mRoot);
    startPhone({"--", "/bin/sh", "-c", std::string("while :; do ") + KELVOD + "; done"});
    Program watch("/usr/bin/env", {"KELVO_ROOT=" + mRoot, KELVOCTL, "--json", "watch"});
    const auto next = [&watch] { return watch.readLine().value_or(""); };
    EXPECT_TRUE(next().starts_with("{\"event\":\"notify_thermal_status\""));
    EXPECT_TRUE(next().starts_with("{\"event\":\"notify_thermal_broadcast\""));
    kill(Program::childrenOf(mPhone->children().back()).at(0), SIGKILL);
    EXPECT_TRUE(next().starts_with("{\"event\":\"notify_thermal_status\"")) << "of the new one";
    EXPECT_TRUE(next().starts_with("{\"event\":\"notify_thermal_broadcast\""));
    EXPECT_EQ(out({"notify", "5"}), "ok\n");
    std::string line = next();
    while (!line.empty() && line.find(":5}") == std::string::npos) {
        line = next();  // what the new daemon makes of its first temperature
    }
    EXPECT_EQ(line, "{\"event\":\"notify_thermal_status\",\"status\":5}");
    watch.signal(SIGTERM);
    const std::string said = watch.wait().err;
    EXPECT_NE(said.find("kelvoctl: the daemon has gone, waiting for it to come back: kelvo\n"
                        "kelvoctl: the daemon is back, registering again: kelvo\n"),
              std::string::npos)
            << said;
}
