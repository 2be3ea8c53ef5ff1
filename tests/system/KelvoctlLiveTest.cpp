// kelvoctl against a simulated phone with the daemon on it, all of them processes.

#include <gmock/gmock.h>
#include <signal.h>

#include <algorithm>
#include <filesystem>
#include <regex>

#include "sim/tree/DeviceTree.h"
#include "sim/tree/TemporaryFolder.h"
#include "support/Program.h"

namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::HasSubstr;
using testing::MatchesRegex;

struct KelvoctlLiveTest : testing::Test {
    KelvoctlLiveTest() { startPhone({}); }
    void startPhone(const std::vector<std::string>& more) {
        std::vector<std::string> command{"live", std::string(EXAMPLES) + "/hello/scenario.json",
                                         "--root", mRoot};
        command.insert(command.end(), more.begin(), more.end());
        mPhone.emplace("kelvosim", command);
        // Until the daemon has answered with a temperature.
        EXPECT_NE(mPhone->lineWith("    31.6   "), "");
    }

    /** As another user when `user` is the command for that. */
    Program::Result kelvoctl(const std::vector<std::string>& arguments,
                             const std::vector<std::string>& user = {}) const {
        return Program::runRooted(mRoot, KELVOCTL, arguments, user);
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
    EXPECT_THAT(out({"list"}), HasSubstr("kelvo\nmanager\n"));
    EXPECT_THAT(out({"--json", "list"}), HasSubstr("\"kelvo\",\"manager\""));
    EXPECT_EQ(out({"--json", "ping"}), "{\"alive\":true}\n");
    EXPECT_EQ(out({"ping", "manager"}), "manager is alive\n");
    EXPECT_EQ(anyStatus(out({"--json", "call", "4", "--reply", "exception,int32,string"})),
              "{\"status\":0,\"values\":[0,0,null]}\n");
    EXPECT_EQ(out({"call", "22", "--reply", "int32,int32"}), "31650\n1\n");
    EXPECT_EQ(out({"getprop", "persist.sys.kelvo.enable"}), "1\n");
    EXPECT_TRUE(out({"dump", "config"}).starts_with("getKelvoConfig result:{"));
    EXPECT_THAT(out({"dump"}), HasSubstr("ThrottlingLevel:0\n"));
    EXPECT_THAT(kelvoctl({"call", "3"}),
                ended(1, "kelvoctl: the service does not know this call: 3\n"));
    EXPECT_THAT(kelvoctl({"ping", "absent"}), ended(1, "kelvoctl: no such service: absent\n"));
    mPhone->signal(SIGTERM);
    EXPECT_EQ(mPhone->wait().status, 0);
}

TEST_F(KelvoctlLiveTest, showsWhatTheDaemonKnowsAndTells) {
    EXPECT_THAT(out({"--json", "status"}),
                AllOf(HasSubstr("\"temp_c\":31.65,\"temp\":31650,\"type\":1,\"ambient\":null,"),
                      HasSubstr(",\"scene\":\"default\",\"config_file\":null,"
                                "\"config_version\":null,\"config_error\":")));
    EXPECT_THAT(out({"status", "--dump", "--json"}), HasSubstr("\"config_version\":\"hello"));
    EXPECT_EQ(anyStatus(out({"--json", "watch", "--count", "2"})),
              "{\"event\":\"notify_thermal_status\",\"status\":0}\n"
              "{\"event\":\"notify_thermal_broadcast\",\"level\":0,\"temp\":31650}\n");
    const Program::Result tooFew = kelvoctl({"--json", "set-config", "--hold", "1,2"});
    EXPECT_THAT(tooFew, ended(1, HasSubstr("a list needs 21 values: --hold 2, ")));
    EXPECT_EQ(tooFew.out, "{\"result\":0}\n");
    EXPECT_EQ(out({"bigdata", "--peek", "--json"}).substr(0, 1), "{");
    EXPECT_THAT(out({"temps"}), HasSubstr("shell 1  31.6 °C\n"));
    EXPECT_THAT(out({"watch", "--count", "1"}),
                MatchesRegex("20..-..-..T..:..:..[.]...Z notify_thermal_status status .*\n"));
    EXPECT_THAT(out({"watch", "--count", "1", "--json", "--time"}), HasSubstr(",\"time\":\"20"));
    EXPECT_EQ(out({"--json", "zones"}), "{\"temps\":null}\n");
    EXPECT_EQ(out({"--json", "screen", "0"}), "{\"ok\":true}\n");
    EXPECT_EQ(out({"--json", "heat", "report"}), "{}\n");
    EXPECT_EQ(kelvoctl({"heat"}).status, 2);
}

TEST_F(KelvoctlLiveTest, saysWhetherAReloadWasTaken) {
    EXPECT_EQ(out({"reload"}), "the configuration was taken\n");
    EXPECT_EQ(out({"reload", "--no-wait"}), "ok\n");
    const std::string log = mRoot + "/data/kelvod.log";
    sim::DeviceTree(mRoot).setNode("/data/zenta_lib/kelvo.conf", "garbage");
    const Program::Result refused = kelvoctl({"reload", "--json"});
    EXPECT_THAT(refused,
                ended(1,
                      "kelvoctl: the configuration was not taken, the one before stays (Get "
                      "file contents failed!): " +
                              log + "\n"));
    EXPECT_EQ(refused.out, R"({"ok":true,"taken":false,"said":"Get file contents failed!"})"
                           "\n");
    EXPECT_THAT(out({"status"}), HasSubstr("config error    Get file contents failed!\n"));
    fs::rename(log, log + ".old");
    EXPECT_THAT(out({"--json", "reload"}),
                HasSubstr(R"("taken":null,"said":"the version is still)"));
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
    EXPECT_THAT(refused, ended(1, "kelvoctl: permission denied: 11\n"));
    EXPECT_EQ(refused.out, "{\"status\":-1,\"values\":[]}\n");
    EXPECT_EQ(kelvoctl({"reload"}, app).err, "kelvoctl: permission denied: RELOAD_CONFIG\n");
    EXPECT_EQ(out({"call", "11"}), "ok\n");
}

TEST_F(KelvoctlLiveTest, noticesThatTheDaemonOrThePhoneIsGone) {
    kill(std::ranges::max(mPhone->children()), SIGKILL);  // the daemon, started last
    EXPECT_THAT(mPhone->wait(), ended(1, HasSubstr("kelvosim: kelvod has ended with signal 9")));
    EXPECT_THAT(kelvoctl({"list"}), ended(1, HasSubstr("kelvoctl: no phone to talk to: ")));
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
    // Before it comes what the new daemon makes of its first temperature.
    EXPECT_EQ(watch.lineWith(":5}"), "{\"event\":\"notify_thermal_status\",\"status\":5}");
    watch.signal(SIGTERM);
    const std::string said = watch.wait().err;
    EXPECT_THAT(said,
                HasSubstr("kelvoctl: the daemon has gone, waiting for it to come back: kelvo\n"
                          "kelvoctl: the daemon is back, registering again: kelvo\n"));
}
