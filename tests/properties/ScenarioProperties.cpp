// Whatever happens to a phone, its replay ends, and a second one is the same.

#include <fstream>

#include "Property.h"
#include "sim/tree/TemporaryFolder.h"
#include "support/Json.h"
#include "support/Program.h"

namespace {

constexpr char kPhone[] =
        "{'name':'any','start':'2026-03-01T23:59:00Z','duration':120,'zones':["
        "{'type':'z0','temp':<20000..60000>},{'type':'z1','temp':<20000..60000>},"
        "{'type':'z2','temp':<20000..60000>}],"
        "'config':{'main':'kelvo.json'},'timeline':[{'t':0,'do':'listen','id':'l'}";

/** It is told and asked, and its zones, services and files come and go. */
constexpr const char* kActions[] = {
        "'dump'",
        "'zones','set':{'z<0..2>':<0..130000>}",
        "'zones','set':{'z<0..2>':null}",
        "'transact','code':<1..26>,'args':[{'int32':<0..3>}],'reply':['int32','int32']",
        "'transact','code':<101..107>,'args':[{'int32':<0..3>}],'reply':['exception','string']",
        "'transact','code':18,'args':[{'string':'app<0..3>'}]",
        "'health','usb':<true|false>",
        "'service','name':'<health|charger|performance|panel|frames|quorix>','state':'<up|down>'",
        "'battery_current','value':<-5000..5000>",
        "'nodes','set':{'/system_ext/etc/kelvo/kelvo.conf':<null|'bytes'>}",
        "'listener_fails','id':'l','code':<0..3>,'count':2",
};

/** The pattern, with a number between for each "<1..9>" and one of them for each "<a|b>". */
std::string fillIn(std::string text, Draws& draws) {
    for (size_t at = text.find('<'); at != std::string::npos; at = text.find('<')) {
        const size_t size = text.find('>') - at + 1;
        std::string chosen = text.substr(at + 1, size - 2);
        int32_t lowest = 0;
        int32_t highest = static_cast<int32_t>(std::ranges::count(chosen, '|'));
        const bool isNumber = std::sscanf(chosen.c_str(), "%d..%d", &lowest, &highest) == 2;
        const int32_t number = draws.in(lowest, highest);
        for (int32_t i = 0; !isNumber && i < number; ++i) {
            chosen.erase(0, chosen.find('|') + 1);
        }
        chosen.resize(std::min(chosen.find('|'), chosen.size()));
        text.replace(at, size, isNumber ? std::to_string(number) : chosen);
    }
    return text;
}

std::string anyScenario(Draws& draws) {
    std::string text = fillIn(kPhone, draws);
    int32_t time = 0;
    for (int32_t i = draws.in(0, 40); i > 0; --i) {
        time += draws.in(0, 3);
        const auto action = static_cast<size_t>(draws.in(0, std::size(kActions) - 1));
        text += ",\n{'t':" + std::to_string(time) + ",'do':" + fillIn(kActions[action], draws) +
                "}";
    }
    return json(text + "]}");
}

TEST(ScenarioProperties, everyScenarioEndsAndRunsTheSameTwice) {
    const sim::TemporaryFolder folder("kelvo-property-");
    const std::string file = folder.path() + "/scenario.json";
    std::ofstream(folder.path() + "/kelvo.json") << json(
            "{'temp_threshold_down':0,'shell_temp_fitting_model':{" + scene("default", 0, "z0") +
            "," + scene("backup_a", 0, "z1") + "," + scene("screen_off", 0, "z2") + "}}");
    const auto endsAndRepeats = [&](Draws& draws) {
        const std::string scenario = anyScenario(draws);
        std::ofstream(file) << scenario;
        const Program::Result first = Program::run("kelvosim", {"replay", file});
        draws.note(scenario + "\n" + first.err + first.out);
        return first.status == 0 && first.out == Program::run("kelvosim", {"replay", file}).out &&
               first.out.ends_with("{\"t\":120.000,\"event\":\"end\"}\n");
    };
    EXPECT_EQ(counterexample(endsAndRepeats, 25), "");
}

}  // namespace
