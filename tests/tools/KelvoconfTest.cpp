#include <gmock/gmock.h>
#include <stdlib.h>

#include <filesystem>
#include <map>

#include "common/ConfigStore.h"
#include "sim/tree/DeviceTree.h"
#include "support/Json.h"
#include "support/Program.h"

namespace fs = std::filesystem;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

struct KelvoconfTest : testing::Test {
    KelvoconfTest() { fs::current_path(files.root()); }

    /** Runs the tool in the folder of the files; standard error is part of `out`. */
    static Program::Result run(const std::string& arguments) {
        return Program::run("/bin/sh", {"-c", "{ " KELVOCONF " " + arguments + "; } 2>&1"});
    }

    sim::DeviceTree files{std::string(getenv("KELVO_ROOT")) + "/files"};
};

}  // namespace

TEST_F(KelvoconfTest, decryptGivesBackWhatEncryptStored) {
    const std::string json = "{\"a\" : 1} // kept\n\n";
    files.setNode("/in.json", json);
    files.setNode("/out.conf", "an older file");
    fs::permissions("out.conf", fs::perms::owner_all);
    EXPECT_EQ(run("encrypt in.json out.conf").out, "");
    EXPECT_EQ(files.node("/out.conf"), common::encryptConfig(json));
    EXPECT_EQ(fs::status("out.conf").permissions(), fs::perms{0644});
    EXPECT_EQ(run("encrypt - - < in.json | " KELVOCONF " decrypt - back.json").status, 0);
    EXPECT_EQ(files.node("/back.json"), json);
    EXPECT_EQ(std::distance(fs::directory_iterator("."), {}), 3) << "nothing half-written";
}

TEST_F(KelvoconfTest, encryptStoresTextThatTheDaemonWouldRejectByForce) {
    files.setNode("/in.json", "\xef\xbb\xbf /* { */\n// {\n{\"a\": x}");
    const Program::Result refused = run("encrypt in.json out.conf");
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.out, EndsWith("; --force stores it: in.json:3:7\n"));
    EXPECT_FALSE(fs::exists("out.conf"));
    const Program::Result result = run("encrypt --force in.json out.conf");
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.out, StartsWith("kelvoconf: warning: dropped 17 bytes before the first "
                                       "\"{\": in.json\n"));
    EXPECT_THAT(result.out, EndsWith(": in.json:3:7\n"));
    EXPECT_EQ(files.node("/out.conf"), common::encryptConfig("{\"a\": x}"));
}

TEST_F(KelvoconfTest, failuresSayWhatAndWhere) {
    files.setNode("/list.json", "[{}]");
    files.setNode("/bad.json", "// first line\n{\"a\": 1,\n \"b\": x}");
    files.setNode("/bad.conf", common::encryptConfig("{\n]"));
    files.setNode("/out", "untouched");
    // arguments, status, message (how the first line ends)
    const std::tuple<const char*, int, const char*> cases[] = {
            {"encrypt list.json out", 1, "the text does not begin with an object: list.json"},
            {"encrypt none.json out", 1, "cannot open (No such file or directory): none.json"},
            {"encrypt --force bad.json none/out", 1, ": none/out"},
            {"decrypt - out < /dev/null", 1, "not an encrypted configuration: standard input"},
            {"decrypt bad.conf - > /dev/full", 1, ": standard output"},
            {"merge --platform SM8450 --project Q bad.json", 1, ": bad.json:3:7"},
            {"merge --platform SM8450 --project Q bad.conf", 1, ": bad.conf:2:1"},
            {"merge --platform SM8450 --project Q list.json", 1, ": list.json"},
            {"lint --platform SM8450 --project Q none.json", 3, ": none.json"},
            {"draft --root .", 1, "no thermal zones below this device root: ."},
            {"show list.json", 1, ": list.json"},
            {"merge --platform SM8450 bad.json", 2, ": command line"},
    };
    for (const auto& [arguments, status, message] : cases) {
        const Program::Result result = run(arguments);
        EXPECT_EQ(result.status, status) << arguments;
        EXPECT_THAT(result.out, StartsWith("kelvoconf: "));
        EXPECT_THAT(result.out, HasSubstr(std::string(message) + "\n")) << arguments;
    }
    EXPECT_EQ(files.node("/out"), "untouched");
}

TEST_F(KelvoconfTest, mergePrintsDocumentOrWhoSetWhatLast) {
    files.setNode("/main.json", R"(// a comment
{"a": 0.1, "o": {"x": 1}, "p": {"x": 1}, "SM8450": {"a": 2, "o": {"x": 3}, "p": {"x": 0.2}},
 "Q,R": {"l": [4], "o": {"y": 5}, "p": {"z": {"v": true}}}, "MT6983": 6})");
    files.setNode("/sub.conf",
                  common::encryptConfig(
                          R"({"a": 7, "p": {"z": null}, "R": {"o": "ü"}, "Q,R": {"b.c": 8}})"));
    const std::string options = "merge --platform SM8450 main.json ";
    // The sub-file's sections become members of the document, and so are touched keys themselves.
    // Replacing an object takes with it what others set inside.
    EXPECT_EQ(run(options + "sub.conf --project R --explain").out,
              "\"Q,R\".\"b.c\" = 8  # sub: top level\n"
              "R.o = \"ü\"  # sub: top level\n"
              "a = 7  # sub: top level\n"
              "l = [4]  # main: project group \"Q,R\"\n"
              "o = \"ü\"  # sub: project section R\n"
              "p.x = 0.2  # main: platform section SM8450\n"
              "p.z.v = true  # main: project group \"Q,R\"\n");
    EXPECT_THAT(run(options + "sub.conf --project Q --explain --json").out,
                HasSubstr(R"({"path":["b.c"],"value":8,"section":"sub: project group \"Q,R\""})"
                          "\n"));
    EXPECT_THAT(run(options + "--project '' --json").out,
                EndsWith("\"a\":2,\"o\":{\"x\":3},\"p\":{\"x\":0.2}}\n"));
    EXPECT_THAT(run(options + "--project ''").out, EndsWith("\n\t\t\"x\" : 0.2\n\t}\n}\n"));
    EXPECT_EQ(run("merge --explain --platform MT6983 --project X main.json").out,
              "kelvoconf: warning: this section is not an object, ignored: "
              "main: platform section MT6983\n");
}

TEST_F(KelvoconfTest, lintEndsWithTheWorstOfItsFindings) {
    const std::string good = R"({"shell_temp_fitting_model": {"default": {"temp_model": {
"front": {"index": 0, "thermal_zone": ["skin"], "coefficient": [1]}}}}, "x": "temp_threshold_down")";
    files.setNode("/warned.json", "// a comment\n" + good + "}");
    files.setNode("/wrong.conf", common::encryptConfig(good + ",\n\"big_data\": 5}"));
    files.setNode("/zones", "# the phone's\ncpu\nskim\n");
    files.setNode("/sub.json", R"({"config_versions": "x"})");
    files.setNode("/gap", "zone  type  sample, m°C  remarks\n0     cpu\n2     gpu\n");
    files.setNode("/t.csv", "t,skin,elsewhere\n0,30,\n9,91000,\n");
    // arguments, status, part
    const std::tuple<const char*, int, const char*> cases[] = {
            {"warned.json", 1, "\n0 errors, 2 warnings; zones not judged (no --zones)\n"},
            {"warned.json --json", 1,
             R"({"severity":"warning","rule":"unknown-key",)"
             R"("file":"warned.json","path":"x","line":3,"what":)"},
            {"warned.json --zones zones", 3, "skim"},
            {"wrong.conf", 3, "wrong.conf:3: error: big_data: expected an object, found 5 "},
            {"- < wrong.conf", 3, "standard input:3: error: big_data: "},
            {"warned.json sub.json", 1, "sub.json:1: warning: config_versions: "},
            {"warned.json --zones none", 3, "kelvoconf: cannot open"},
            {"warned.json --zones /dev/null", 3, "kelvoconf: no list of zones: /dev/null\n"},
            {"warned.json --zones " KELVOCONF, 3, "kelvoconf: no list of zones: " KELVOCONF "\n"},
            {"warned.json --zones sub.json", 3, "kelvoconf: no list of zones: sub.json\n"},
            {"warned.json --zones gap", 3, "kelvoconf: no list of zones: gap\n"},
            {"warned.json --trace t.csv", 1, "\"skin\" at 91 °C adds 91 °C (t.csv: line 3) "},
            {"warned.json --trace t.csv", 1, "kelvoconf: warning: the zone \"skin\" is 30 m°C"},
            {"warned.json --trace sub.json", 3, "the column t: sub.json: line 1\n"},
    };
    for (const auto& [arguments, status, part] : cases) {
        const Program::Result result =
                run("lint --platform SM8450 --project Q " + std::string(arguments));
        EXPECT_EQ(result.status, status) << arguments;
        EXPECT_THAT(result.out, HasSubstr(part)) << arguments;
    }
    EXPECT_THAT(run("lint --project Q warned.json").out,
                EndsWith("\n    hits:   every phone\n0 errors, 2 warnings; for any platform; "
                         "project Q; zones not judged (no --zones)\n"));
    EXPECT_THAT(run("lint --json warned.json sub.json").out,
                EndsWith(R"(,"hits":[{"platform":null,"projects":[null]}]})"
                         "\n"));
    fs::rename("sub.json", "kelvo_SM8450.json");
    EXPECT_THAT(run("lint --json warned.json kelvo_SM8450.json").out,
                EndsWith(R"(,"hits":[{"platform":"SM8450","projects":[null]}]})"
                         "\n"));
}

TEST_F(KelvoconfTest, draftListsZonesAndBeginsAConfiguration) {
    const std::pair<const char*, std::optional<int32_t>> zones[] = {
            {"cpu", 36000},       {"battery", 31000}, {"battery", 31500},
            {"board-ntc", 33000}, {"lcd-ntc", {}},    {"quiet-ntc", 33500},
            {"xo", -274000},      {"skin", 30},       {"charger", 32000}};
    sim::DeviceTree phone(files.root() + "/phone");
    int32_t index = 0;
    for (const auto& [type, temp] : zones) {
        phone.addZone(index++, type, temp);
    }
    phone.addZone(11, "late", 30000);
    const Program::Result drafted = run("draft --root phone --output draft.json");
    EXPECT_EQ(drafted.out,
              "kelvoconf: warning: the daemon stops at the missing zone 9 and does not find zone "
              "11: phone\n"
              "zone  type       sample, m°C  remarks\n"
              "0     cpu              36000\n"
              "1     battery          31000  duplicate type: by it the daemon finds zone 2\n"
              "2     battery          31500  duplicate type: by it the daemon finds zone 2\n"
              "3     board-ntc        33000\n"
              "4     lcd-ntc                 unreadable\n"
              "5     quiet-ntc        33500\n"
              "6     xo             -274000  implausible: the daemon takes it as failed\n"
              "7     skin                30  implausible: hardly m°C\n"
              "8     charger          32000\n");
    const std::string lint = " --zones phone --platform SM8450 --project Q ";
    EXPECT_EQ(run("lint draft.json" + lint).out, "0 errors, 0 warnings\n");
    const std::string used = files.node("/draft.json").value_or("");
    EXPECT_THAT(used, HasSubstr("[\"board-ntc\", \"quiet-ntc\", \"charger\"]"));
    EXPECT_EQ(run("draft --root phone 2> /dev/null | " KELVOCONF " lint -" + lint).status, 0);
    EXPECT_THAT(run("draft --root phone --zones-only --json").out,
                HasSubstr("{\"index\":4,\"type\":\"lcd-ntc\",\"sample\":null,"
                          "\"remarks\":[\"unreadable\"]}\n"));
    // What draft prints is a list of zones, with their temperatures.
    files.setNode("/hot.json", R"({"temp_threshold_down": 1,
"specified_tempzone_info": {"thermal_zone_type": ["xa"]}, "shell_temp_fitting_model": {"default":
{"temp_model": {"front": {"index": 0, "thermal_zone": ["quiet-ntc"], "coefficient": [1]},
"back": {"index": 1, "thermal_zone": [3], "coefficient": [9]}}}}})");
    const std::string expected = run("lint hot.json --json --zones phone").out;
    EXPECT_THAT(expected, HasSubstr("the nearest is \\\"xo\\\""));
    EXPECT_THAT(expected, HasSubstr("the weight 9 of the zone 3 at 33 °C adds 297 °C (phone)"));
    for (const char* json : {"", " --json"}) {
        run("draft --root phone --zones-only" + std::string(json) + " 2>/dev/null > phone.list");
        EXPECT_EQ(
                run("lint hot.json --json --zones phone.list | sed 's/(phone.list)/(phone)/'").out,
                expected)
                << json;
    }
}

TEST_F(KelvoconfTest, draftKnowsZonesThatAreNamedAfterModels) {
    sim::DeviceTree phone(files.root() + "/phone");
    int32_t index = 0;
    for (const char* type :
         {"backlight", "lab-front", "back-ntc", "skin", "FRONT_therm", "pmic-board"}) {
        phone.addZone(index++, type, 30000);
    }
    const Json::Value skeleton = parsed(run("draft --root phone 2> /dev/null").out);
    const Json::Value& models = skeleton["shell_temp_fitting_model"]["default"]["temp_model"];
    std::string zones;
    for (const std::string& name : models.getMemberNames()) {
        zones += name;
        for (const Json::Value& zone : models[name]["thermal_zone"]) {
            zones += " " + zone.asString();
        }
        zones += "\n";
    }
    EXPECT_EQ(zones,
              "back back-ntc\nboard pmic-board\nframe skin FRONT_therm back-ntc pmic-board\n"
              "front FRONT_therm\n");
}

TEST_F(KelvoconfTest, showsWhatTheDaemonMakesOfAFile) {
    files.setNode("/main.json", R"({"shell_temp_fitting_model": {"default": {"temp_model": {
"front": {"index": 0, "thermal_zone": ["skin", 7], "coefficient": [0.25, 1, -300]},
"back": {"index": 1, "thermal_zone": ["skin"], "coefficient": [1]}, "frame": {}}}, "empty": {}},
"thermal_status_model": {"temp_threshold": [-1, 36], "temp_threshold_down": [-1, 35],
"thermal_status": [0]}})");
    EXPECT_EQ(run("show main.json").out,
              "Scenes\n"
              "  scene    used   models\n"
              "  default  usual  back, front\n"
              "  empty    never  none, not kept\n\n"
              "Models of default: weights of the zones\n"
              "  zone           back (1)  front (0)\n"
              "  skin                  1       0.25\n"
              "  number 7                         1\n"
              "  constant, m°C                 -300\n"
              "  skipped: frame\n\n"
              "Zones\n"
              "  zone      used by\n"
              "  number 7  default\n"
              "  skin      default\n\n"
              "Levels\n"
              "  level  rises at, °C  falls below, °C  status\n"
              "  0                -1               -1       0\n"
              "  1                36               35\n");
}

TEST_F(KelvoconfTest, completesCommandsOptionsAndFiles) {
    files.setNode("/main.json", "");
    const std::map<std::string, std::string> rows{{"d", "decrypt draft"},
                                                  {"lint --z", "--zones"},
                                                  {"lint --zones ma", "main.json"},
                                                  {"merge --platform ''", ""},
                                                  {"--vers", "--version"}};
    for (const auto& [words, offered] : rows) {
        EXPECT_EQ(Program::completed(COMPLETION, "kelvoconf " + words), offered) << words;
    }
}
