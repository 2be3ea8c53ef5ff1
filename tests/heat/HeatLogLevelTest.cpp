// What the daemon does never depends on how much it says.

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <sstream>

#include "sim/tree/TemporaryFolder.h"
#include "support/Json.h"
#include "support/Program.h"

namespace {

struct Outcome {
    std::string events;
    std::string errors;  // lines of the log at this priority
};

std::string read(const std::string& file) {
    std::ifstream stream(file);
    return {std::istreambuf_iterator<char>(stream), {}};
}

Outcome replay(const std::string& scenario, const char* logLevel) {
    const sim::TemporaryFolder folder("kelvo-test-");
    const std::string events = folder.path() + "/events";
    const std::string log = folder.path() + "/log";
    const auto result = Program::run("kelvosim", {"replay", scenario, "--events", events, "--log",
                                                  log, "--loglevel", logLevel});
    EXPECT_EQ(result.status, 0) << result.err;
    Outcome outcome{read(events), ""};
    std::istringstream lines(read(log));
    for (std::string line; std::getline(lines, line);) {
        if (line.find(" E ") != std::string::npos) {
            outcome.errors += line + "\n";
        }
    }
    return outcome;
}

void expectSameAtEachLevel(const std::string& scenario) {
    const Outcome quiet = replay(scenario, "0");
    EXPECT_NE(quiet.errors.find("displayComp init load heat source play model"), std::string::npos)
            << "the components were made";
    const Outcome talkative = replay(scenario, "2");
    EXPECT_EQ(quiet.errors, talkative.errors) << scenario;
    EXPECT_EQ(quiet.events, talkative.events) << scenario;
}

}  // namespace

TEST(HeatLogLevelTest, changesNothingWithTablesOfNoUse) {
    const sim::TemporaryFolder folder("kelvo-test-");
    const std::string scenario = folder.path() + "/scenario.json";
    std::ofstream(scenario) << json(
            "{'name':'odd','duration':120,'properties':{'persist.sys.kelvo.enable':'1'},"
            "'zones':[{'type':'hot','temp':45000}],'config':{'main':'kelvo.json'}}");
    for (const char* brightness : {"{}", "{'factor':['el_brt',7],'coefficient':[500,1]}",
                                   "{'factor':['el_brt'],'coefficient':[]}"}) {
        std::ofstream(folder.path() + "/kelvo.json")
                << json("{'shell_temp_fitting_model':{" + scene("default", 0, "hot") +
                        ",'heatsource_detection':{'heatsource_model':{},'gpu_model':3,"
                        "'cellar_model':{'thermal_zone_type':['nowhere']},"
                        "'brightness_model':" +
                        brightness + "}}}");
        expectSameAtEachLevel(scenario);
    }
}
