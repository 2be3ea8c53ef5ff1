// The command line of kelvoctl; what it asks of a phone is in the system tests.

#include <gmock/gmock.h>

#include <filesystem>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <sstream>

#include "support/Phone.h"
#include "support/Program.h"

namespace {

using testing::StartsWith;

/** With these words for arguments. */
Program::Result kelvoctl(const std::string& words) {
    std::istringstream stream(words);
    return Program::runRooted(getenv("KELVO_ROOT"), KELVOCTL,
                              {std::istream_iterator<std::string>(stream), {}},
                              {"KELVO_BINDER=hub"});
}

}  // namespace

TEST(KelvoctlTest, saysAtOnceThatThereIsNoPhone) {
    for (const char* command : {"list", "ping", "call 4", "dump", "--json list"}) {
        EXPECT_THAT(kelvoctl(command),
                    ended(1, StartsWith("kelvoctl: no phone to talk to: no binder driver: ")));
    }
}

TEST(KelvoctlTest, refusesWrongUsage) {
    for (const char* command :
         {"", "no-such-command", "call", "call x", "call 4 int32:2147483648", "call 4 int32:1x",
          "call 4 vector:1,", "call 4 vector:,1", "call 4 string", "call 4 float:1",
          "call 4 --reply int32,double", "setprop name"}) {
        EXPECT_THAT(kelvoctl(command), ended(2, StartsWith("kelvoctl: "))) << command;
    }
    const std::pair<const char*, const char*> named[] = {
            {"stauts", "no command \"stauts\", did you mean \"status\"?"},
            {"--json heat sart", "no command \"sart\", did you mean \"start\"?"},
            {"qqqqqqqq 1", "no command \"qqqqqqqq\": "},
            {"watch --count 0", "--count: expected a number of calls from 1 on, not 0: "},
            {"wifi WifiState:3", "expected WifiState:N,ApState:N,"},
            {"network level:1", "expected connectState:N,level:N,rssi:N,"},
            {"speed transmit:1", "expected transmit:N,receive:N,mobileTx:N,mobileRx:N, N "},
    };
    for (const auto& [command, problem] : named) {
        EXPECT_THAT(kelvoctl(command), ended(2, StartsWith(std::string("kelvoctl: ") + problem)))
                << command;
    }
}

TEST(KelvoctlTest, refusesARootThatIsNoPhones) {
    const std::string root = std::string(getenv("KELVO_ROOT")) + "/none";
    for (const std::vector<std::string>& command :
         {std::vector<std::string>{"setprop", "a", "b"}, {"getprop", "a"}, {"status"}}) {
        EXPECT_THAT(Program::runRooted(root, KELVOCTL, command),
                    ended(1, StartsWith("kelvoctl: no phone to talk to: no folder " + root +
                                        "/dev/properties; \"kelvosim live SCENARIO\" starts")));
    }
    EXPECT_FALSE(std::filesystem::exists(root));
}

TEST(KelvoctlTest, readsAndSetsPropertiesWithoutBinder) {
    EXPECT_EQ(kelvoctl("getprop sys.none").out, "\n");
    EXPECT_EQ(kelvoctl("--json getprop sys.none").out, "{\"value\":\"\"}\n");
    EXPECT_EQ(kelvoctl("--json setprop sys.level -1").out, "{\"ok\":true}\n");
    EXPECT_EQ(phone().property("sys.level"), "-1");
    EXPECT_THAT(kelvoctl("setprop a/b 1"), ended(1, "kelvoctl: the property cannot be set: a/b\n"));
}

TEST(KelvoctlTest, isCompletedByBash) {
    phone().setProperty("persist.sys.abc", "1");
    const std::map<std::string, std::string> rows{
            {"st", "status"},
            {"--j", "--json"},
            {"--json w", "watch wifi"},
            {"heat f", "feed-start feed-stop"},
            {"bigdata -", "--help --peek"},
            {"watch --c", "--count"},
            {"reload --n", "--no-wait"},
            {"watch --count ''", ""},
            {"call 4 --reply exception,i", "exception,int32"},
            {"call 4 v", "vector:"},
            {"setprop persist.sys.a", "persist.sys.abc"},
            {"ping ''", ""},
    };
    for (const auto& [words, offered] : rows) {
        EXPECT_EQ(Program::completed(COMPLETION, "kelvoctl " + words), offered) << words;
    }
    // Each command of the program, and nothing else.
    std::istringstream help(kelvoctl("--help").out);
    std::multiset<std::string> commands;
    const std::regex command("  ([a-z][^ ]*).*   .*");
    std::smatch parts;
    for (std::string line; std::getline(help, line);) {
        if (std::regex_match(line, parts, command)) {
            commands.insert(parts[1]);
        }
    }
    std::istringstream offered(Program::completed(COMPLETION, "kelvoctl ''"));
    EXPECT_EQ(commands,
              (std::multiset<std::string>{std::istream_iterator<std::string>(offered), {}}));
}
