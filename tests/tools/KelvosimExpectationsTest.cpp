#include <gmock/gmock.h>

#include <sstream>

#include "expectations/Junit.h"
#include "sim/scenario/ScenarioParser.h"
#include "support/Json.h"

namespace {

/** Warm from 20 s on, with a status from 30 s to 60 s; the model "back" was never evaluated. */
Recording recording() {
    Recording run;
    run.info.durationMs = 100'000;
    run.shell.add(0, 30000);
    run.shell.add(20'000, 38250);
    run.status.add(0, 0);
    run.status.add(30'000, 1);
    run.status.add(60'000, 0);
    run.scene.add(5'000, "default");
    run.notifications = {{30'000, "ui", "notify_thermal_status", {{"status", 1}}},
                         {60'000, "ui", "notify_thermal_status", {{"status", 0}}}};
    kelvo::LevelDecision decision;
    decision.temp = 38250;
    decision.below = {true, 3, 38};
    decision.newLevel = 3;
    run.decisions = {{30'000, decision}};
    return run;
}

std::vector<Verdict> verdicts(const std::string& expectation) {
    const std::string scenario = "{'duration': 100, 'expect': [" + expectation + "]}";
    return judge(sim::parseScenario(json(scenario), "s.json", ".").expect, recording());
}

TEST(Verdict, saysWhatHappened) {
    // expected, whether it passes, what happened
    const std::tuple<const char*, bool, const char*> cases[] = {
            {"{'at': 30, 'status': 1}", true, "at 30 s: status 1"},
            {"{'at': 60, 'status': 1}", false, "at 60 s: status 0, since 60 s"},
            {"{'by': 30, 'status': 1}", true, "at 30 s: status 1"},
            {"{'by': 29.999, 'status': 1}", false,
             "at 29.999 s: status 0; as expected first at 30 s"},
            {"{'by': 50, 'status': 2}", false,
             "at 50 s: status 1; until then status from 0 to 1; not up to the end either"},
            {"{'from': 30, 'to': 59.999, 'status': 1}", true, "at 30 s: status 1"},
            {"{'from': 30, 'to': 60, 'status': 1}", false,
             "at 60 s: status 0, for 0 s in all; status from 0 to 1"},
            {"{'never': {'shell_above': 38.25}}", true, "shell from 30.000 to 38.250 °C"},
            {"{'never': {'shell_above': 38.2}, 'to': 90}", false,
             "at 20 s: shell 38.250 °C, for 70 s in all; shell from 30.000 to 38.250 °C"},
            {"{'never': {'shell_above': 38, 'status': 0}, 'to': 59}", false,
             "at 20 s: shell 38.250 °C, status 0, for 10 s in all"},
            {"{'always': {'scene': 'default'}}", true, "at 5 s: scene default"},
            {"{'never': {'model_above': {'back': 43}}}", false,
             "there was no model back in that time"},
            {"{'always': {'ambient_below': 43}}", false, "there was no ambient in that time"},
            {"{'never': {'heat_source': 'cpu'}}", true, "at 0 s: no heat source"},
            {"{'by': 99, 'notification': {'event': 'notify_thermal_status', 'status': 1}}", true,
             "at 30 s notify_thermal_status to ui: status 1"},
            {"{'by': 29, 'notification': 'notify_thermal_status'}", false,
             "no such call; the nearest: at 30 s notify_thermal_status to ui: status 1"},
            {"{'from': 0, 'notification': {'event': 'notify_thermal_status', 'count': 3}}", false,
             "2 calls, the first at 30 s notify_thermal_status to ui: status 1, the last at 60 s"},
            {"{'never': {'notification': 'notify_ambient_thermal'}}", true, "no such call"},
            {"{'at': 30, 'notification': 'notify_ambient_thermal'}", false,
             "no such call; none of notify_ambient_thermal at all"},
    };
    for (const auto& [text, passed, happened] : cases) {
        const Verdict verdict = verdicts(text).at(0);
        EXPECT_EQ(verdict.passed, passed) << text;
        EXPECT_EQ(verdict.happened, happened) << text;
        EXPECT_EQ(verdict.why.empty(), passed) << text;
    }
}

TEST(Verdict, givesTheEnginesReasons) {
    EXPECT_EQ(verdicts("{'at': 40, 'status': 0}").at(0).why,
              "decision at 30 s, shell 38.250 °C, reached rising threshold of level 3, 38 °C: "
              "level 0 → 3, status 0");
    EXPECT_EQ(verdicts("{'at': 9, 'level': 0, 'scene': 'x'}").at(0).why,
              "no decision about the level until then; \"default\" since 5 s");
}

TEST(Junit, holdsWhatXmlMay) {
    std::ostringstream out;
    writeJunit(out, "a<b",
               verdicts("{'at': 1, 'status': 0}, {'name': '\\u0001\\u0026', 'at': 1, "
                        "'status': 1}"));
    EXPECT_THAT(out.str(),
                testing::AllOf(
                        testing::HasSubstr("name=\"a&lt;b\" tests=\"2\" failures=\"1\""),
                        testing::HasSubstr("name=\"expect[0]: at 1 s: status 0\"/>"),
                        testing::HasSubstr("name=\"expect[1]: ?&amp;\"><failure message=\"at 1 s: "
                                           "status 0, since 0 s\">")));
}

}  // namespace
