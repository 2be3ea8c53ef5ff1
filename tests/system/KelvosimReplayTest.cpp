#include <gmock/gmock.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <map>
#include <sstream>

#include "sim/tree/TemporaryFolder.h"
#include "support/Files.h"
#include "support/Json.h"
#include "support/Program.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;

std::string example(const std::string& name) {
    return std::string(EXAMPLES) + "/" + name + "/scenario.json";
}

/** A replay's lines of JSON. */
std::vector<Json::Value> linesOf(const std::string& name, const std::vector<std::string>& options) {
    std::vector<std::string> arguments{"replay", example(name)};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return parsedLines(Program::run("kelvosim", arguments).out);
}

void expectSumsAreRight(const Json::Value& pass) {
    for (const Json::Value& model : pass["models"]) {
        double sum = 0;
        for (const Json::Value& term : model["terms"]) {
            EXPECT_EQ(term["contribution"].asDouble(),
                      term["coefficient"].asDouble() * term["temp"].asInt());
            sum += term["contribution"].asDouble();
        }
        sum += model["constant"].isNull() ? 0 : model["constant"].asDouble();
        EXPECT_EQ(model["computed"].asInt(), static_cast<int32_t>(sum)) << pass;
    }
}

/** The component of the most heat, with what its samples come to. */
void expectRanked(const Json::Value& ranking) {
    int32_t most = -1;
    std::string main;
    for (const Json::Value& one : ranking["contributions"]) {
        if (one["heat"].asInt() > most) {
            most = one["heat"].asInt();
            main = one["component"].asString();
        }
        double sum = 0;
        for (const Json::Value& sample : one["samples"]) {
            sum += sample[1].asInt();
        }
        if (one["method"] == "mean") {
            EXPECT_NEAR(one["heat"].asInt(),
                        sum / one["samples"].size() / one["coefficient"].asDouble(), 1.001)
                    << one;
        }
    }
    EXPECT_EQ(ranking["main"].asString(), main) << ranking;
}

struct KelvosimReplayTest : testing::Test {
    std::string path(const std::string& name) const { return mFolder.path() + "/" + name; }

  private:
    const sim::TemporaryFolder mFolder{"kelvo-test-"};
};

struct Outcome {
    std::string events;
    std::string errors;  // lines of the log at this priority
};

Outcome replay(const std::string& scenario, const std::string& level) {
    const sim::TemporaryFolder folder("kelvo-test-");
    const std::string log = folder.path() + "/log";
    const Program::Result run = Program::run(
            "kelvosim", {"replay", scenario, "--events", "-", "--log", log, "--loglevel", level});
    EXPECT_EQ(run.status, 0) << run.err;
    const std::string text = readFile(log);
    EXPECT_TRUE(text.starts_with("0.000 E kelvo main start\n") == (level != "-1")) << level;
    EXPECT_EQ(text.find(" D ") != std::string::npos, level == "2") << level;
    std::istringstream lines(text);
    std::string errors;
    for (std::string line; std::getline(lines, line);) {
        errors += line.find(" E ") == std::string::npos ? "" : line + "\n";
    }
    return {run.out, errors};
}

}  // namespace

TEST_F(KelvosimReplayTest, givesTheSameEventsOnEveryRunAndAtEveryLogLevel) {
    using Levels = std::vector<std::string>;
    for (const auto& entry : std::filesystem::directory_iterator(EXAMPLES)) {
        if (!entry.is_directory()) {
            continue;
        }
        const std::string name = entry.path().filename();
        const Program::Result first = Program::run("kelvosim", {"replay", example(name)});
        EXPECT_EQ(first.status, 0) << first.err;
        EXPECT_THAT(first.out, HasSubstr("\"event\":\"write\"")) << name;
        EXPECT_TRUE(first.out.ends_with("\"event\":\"end\"}\n")) << name;
        // One more run of the long day is enough.
        for (const std::string& level : name == "day" ? Levels{"0"} : Levels{"-1", "2"}) {
            EXPECT_EQ(replay(example(name), level).events, first.out) << name << " at " << level;
        }
    }
}

TEST_F(KelvosimReplayTest, doesTheSameAtEveryLogLevelWithHeatTablesOfNoUse) {
    const std::string scenario = path("scenario.json");
    std::ofstream(scenario) << json(
            "{'duration':120,'zones':[{'type':'hot','temp':45000}],'config':{'main':'kelvo.json'}"
            "}");
    for (const char* brightness : {"{}", "{'factor':['el_brt',7],'coefficient':[500,1]}",
                                   "{'factor':['el_brt'],'coefficient':[]}"}) {
        std::ofstream(path("kelvo.json"))
                << json("{'shell_temp_fitting_model':{" + scene("default", 0, "hot") +
                        ",'heatsource_detection':{'heatsource_model':{},'gpu_model':3,"
                        "'cellar_model':{'thermal_zone_type':['nowhere']},"
                        "'brightness_model':" +
                        brightness + "}}}");
        const Outcome quiet = replay(scenario, "0");
        EXPECT_THAT(quiet.errors, HasSubstr("displayComp init load heat source play model"))
                << "the components were made";
        const Outcome talkative = replay(scenario, "2");
        EXPECT_EQ(quiet.errors, talkative.errors) << brightness;
        EXPECT_EQ(quiet.events, talkative.events) << brightness;
    }
}

TEST_F(KelvosimReplayTest, showsInTheShellWhatTheExamplesAreFor) {
    const std::map<std::string, std::vector<int32_t>> outputs{
            {"scenes", {32500, 34500, 32500, 31000, 32500, 33500, 34500, 33500}},
            {"failing-zone", {32500, 33300, 34300, 31800, 33000}}};
    for (const auto& [name, expected] : outputs) {
        std::vector<int32_t> written;
        for (const Json::Value& event : linesOf(name, {})) {
            const std::string text = event["text"].asString();
            if (event["path"] == "/proc/shell-temp" && text.starts_with("0 ")) {
                written.push_back(std::stoi(text.substr(2)));
            }
        }
        EXPECT_EQ(written, expected) << name;
    }
    const auto log = [](const std::string& name) {
        return Program::run("kelvosim", {"replay", example(name), "--log", "-"}).out;
    };
    EXPECT_THAT(log("scenes"),
                HasSubstr("110.000 E current scene is wireless charge, ignore flash scene\n"));
    EXPECT_THAT(log("scenes"),
                AllOf(HasSubstr("40.000 E current scene is flashon, ignore screen fold scene\n"),
                      HasSubstr("200.000 E Same operator code:0\n")));
    EXPECT_THAT(log("failing-zone"),
                AllOf(HasSubstr("55.000 E Get temp(tz:0) still failed! add list(size:1)\n"),
                      HasSubstr("225.000 E switch to scene flashon failed, keep origin\n")));
}

TEST_F(KelvosimReplayTest, writesOnlyTheEndWhenTheDaemonIsDisabled) {
    const std::string scenario = path("scenario.json");
    std::ofstream(scenario) << R"({"name":"off","duration":3,
        "properties":{"persist.sys.kelvo.enable":"0"}})";
    const Program::Result result = Program::run("kelvosim", {"replay", scenario});
    EXPECT_EQ(result.out, "{\"t\":3.000,\"event\":\"end\"}\n");
    EXPECT_EQ(result.err, "kelvosim: the daemon is disabled, so nothing happens (\"0\"): " +
                                  scenario + ": properties.persist.sys.kelvo.enable\n");
}

TEST_F(KelvosimReplayTest, saysWhatKeepsTheDaemonFromItsConfiguration) {
    const std::string scenario = path("scenario.json");
    const std::string page = path("page.html");
    // members, configuration, what is said
    const std::tuple<const char*, const char*, const char*> cases[] = {
            {"", "", "the phone has no configuration, so the daemon does without one: "},
            {R"(,"config":{"main":"c.json"})", "{\n\"a\": }", ": config.main:2\n"},
            {R"(,"config":{"data":"c.json"})", "{}", "is nowhere in the file (the daemon takes"},
            {R"(,"config":{"main":"c.json"})", "{\"temp_threshold_down\": 1}", ""},
    };
    for (const auto& [members, config, said] : cases) {
        std::ofstream(path("c.json")) << config;
        std::ofstream(scenario) << R"({"duration":1)" << members << "}";
        const Program::Result result =
                Program::run("kelvosim", {"replay", scenario, "--report", page});
        EXPECT_EQ(result.status, 0);
        EXPECT_THAT(result.err, HasSubstr(said));
        EXPECT_EQ(std::ranges::count(result.err, '\n'), *said != '\0' ? 1 : 0) << result.err;
        EXPECT_EQ(readFile(page).find("\"problem\":\"\"") != std::string::npos, *said == '\0');
    }
}

TEST_F(KelvosimReplayTest, comparesWithAnotherConfiguration) {
    const std::string other = path("other.json");
    const std::string page = path("page.html");
    const auto against = [&](const std::string& file) {
        return Program::run("kelvosim",
                            {"replay", example("hello"), "--against", file, "--report", page});
    };
    const std::string own = std::string(EXAMPLES) + "/hello/kelvo.json";
    EXPECT_THAT(against(own).out, HasSubstr("\nidentical: shell temperature, level, "));
    // The one model of the example, two degrees warmer from its constant on.
    std::string text = readFile(own);
    const size_t constant = text.rfind("1500]");
    ASSERT_NE(constant, std::string::npos);
    std::ofstream(other) << "// warmer\n" << text.replace(constant, 1, "3");
    const Program::Result warmer = against(other);
    EXPECT_EQ(warmer.status, 0) << warmer.err;
    EXPECT_THAT(warmer.out, AllOf(HasSubstr("  mean           2.000 absolute, +2.000 signed\n"),
                                  HasSubstr("(+2.000)\n")));
    EXPECT_THAT(readFile(page), HasSubstr("\"others\":[{\"config\":\"" + other + "\""));
    // Two others, one of them with a sub-file that takes the two degrees back.
    const std::string both = path("both.json");
    std::ofstream(both) << text;
    text.replace(constant, 1, "1");
    std::ofstream(path("both_SM8450.json")) << text;
    const Program::Result two = Program::run(
            "kelvosim", {"replay", "--against", other, "--against", both, example("hello"),
                         "--comparison", path("comparison"), "--report", page});
    EXPECT_THAT(two.out,
                AllOf(HasSubstr("other: " + other +
                                "\ndiffer: shell temperature, model "
                                "front, level, status\n"),
                      HasSubstr("both.json with " + path("both_SM8450.json") + "\nidentical: ")));
    const auto lines = parsedLines(readFile(path("comparison")));
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0]["figures"][1]["name"], "model front");
    EXPECT_EQ(lines[0]["figures"][1]["mean_signed"], 2.0);
    EXPECT_EQ(lines[1]["identical"], true);
    std::ofstream(other) << "{\n\"a\": }";
    EXPECT_THAT(against(other), ended(1, HasSubstr(other + ": line 2, column 6\n")));
}

TEST_F(KelvosimReplayTest, tellsATerminalHowFarItHasCome) {
    const std::string scenario = path("scenario.json");
    const std::string events = path("events");
    const std::string program = std::filesystem::path(KELVOD).parent_path() / "kelvosim";
    std::string shown;
    // Until it takes more than the half second after which there is something to tell.
    for (int64_t seconds = 100000; shown.empty(); seconds *= 4) {
        std::ofstream(scenario) << R"({"zones":[{"type":"cpu","temp":30000}],"duration":)"
                                << seconds << "}";
        int terminal = -1;
        if (forkpty(&terminal, nullptr, nullptr, nullptr) == 0) {
            setenv("TERM", "xterm", 1);
            execl(program.c_str(), "kelvosim", "replay", scenario.c_str(), "--events",
                  events.c_str(), nullptr);
            _exit(127);
        }
        char bytes[512];
        for (ssize_t got = 0; (got = read(terminal, bytes, sizeof(bytes))) > 0;) {
            shown.append(bytes, static_cast<size_t>(got));
        }
        close(terminal);
        int status = -1;
        wait(&status);
        ASSERT_EQ(status, 0) << shown;
    }
    EXPECT_THAT(shown, testing::MatchesRegex("\r\x1b\\[K *[0-9]+ %  [0-9:]+ of [0-9:]+  [0-9]+ x "
                                             "real time.*\r\x1b\\[K"));
}

TEST_F(KelvosimReplayTest, explainsEachValueByWhatItWasMadeOf) {
    // What the daemon wrote, pass by pass, must be what the reasons say was written.
    for (const std::string name : {"game", "scenes", "failing-zone"}) {
        std::multimap<double, std::string> written, explained;
        for (const Json::Value& event : linesOf(name, {"--events", "-"})) {
            if (event["event"] == "write" && event["path"] == "/proc/shell-temp") {
                written.emplace(event["t"].asDouble(), event["text"].asString());
            }
        }
        int32_t level = -1;
        std::map<std::string, size_t> counts;
        for (const Json::Value& line : linesOf(name, {"--explain", "-"})) {
            const std::string event = line["event"].asString();
            ++counts[event];
            if (event == "fitting_pass") {
                expectSumsAreRight(line);
                EXPECT_EQ(line["failed"].isNull(), !line["outputs"].empty()) << line;
                for (const Json::Value& out : line["outputs"]) {
                    if (out["written"].asBool()) {
                        explained.emplace(line["t"].asDouble(),
                                          out["index"].asString() + " " + out["value"].asString());
                    }
                }
            } else if (event == "level_decision") {
                EXPECT_EQ(line["old_level"].asInt(), level) << line;
                level = line["level"].asInt();
                const bool isKept = line["rule"].asString().starts_with("kept");
                EXPECT_EQ(level == line["old_level"].asInt(), isKept) << line;
            } else if (event == "heat_ranking") {
                expectRanked(line);
            }
        }
        EXPECT_EQ(explained, written) << name;
        EXPECT_GT(counts["level_decision"], 0u) << name;
        EXPECT_EQ(counts["heat_ranking"] > 0, name == "game");
    }
}
