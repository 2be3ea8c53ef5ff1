#include "core/KelvoState.h"

#include "core/DataCollector.h"
#include "core/MessageManager.h"
#include "sim/virtual/VirtualScheduler.h"
#include "sim/virtual/VirtualTime.h"
#include "support/EngineTest.h"

namespace {

using Outputs = std::map<std::string, int32_t>;
struct KelvoStateTest : EngineTest {
    void start(const std::string& more = "") {
        startWithoutTemp(more);
        runUntil(0);
        state();  // its day begins when it is first asked for
        takeEvents();
        log.clear();
    }
    Lines eventsAfter(const Outputs& outputs) {
        state().updateShellTemps(outputs, {{"front", {41, 42}}});
        sim::VirtualScheduler::get().handleMessages();
        return takeEvents();
    }
    static KelvoState& state() { return KelvoState::getInstance(); }
};

std::string atom(const std::string& text, int32_t value) {
    return "{'event':'atom','id':100001,'text':'" + text + "','value':" + std::to_string(value) +
           "}";
}

}  // namespace

TEST_F(KelvoStateTest, followsTheHottestOutputByTheTenth) {
    start();
    // outputs, events, temp, detail (none: no line, as the temperature moved less than half a
    // degree)
    const std::tuple<Outputs, Lines, int32_t, std::optional<std::string>> steps[] = {
            {{{"back", 34500}, {"board", 36000}, {"front", 34500}},
             {atom("back:34500,front:34500,", 34500)},
             34500,
             "back 34500, +(1500), 36000 "},
            {{{"back", 34599}}, {}, 34500, {}},
            {{{"back", 34600}}, {atom("back:34600,", 34600)}, 34600, {}},
            {{{"back", 34999}, {"front", 1}}, {atom("back:34999,front:1,", 34999)}, 34999, {}},
            {{{"front", 35000}},
             {atom("front:35000,", 35000)},
             35000,
             "front 35000, +(1000), 36000 41 42"},
            {{{"board", 20000}, {"front", 40000}},
             {atom("front:40000,", 40000)},
             40000,
             "front 40000, +(-20000), 20000 41 42"},
            {{{"board", 20099}, {"front", 40100}},
             {atom("front:40100,", 20099)},
             20099,
             "front 40100 20099, +(0), 20099 41 42"},
            // The board alone: its value, and as nothing competes, told after every pass.
            {{{"board", 30000}}, {atom("", 30000)}, 30000, " 30000, +(0), 30000 "},
            {{{"board", 30000}}, {atom("", 30000)}, 30000, {}},
    };
    for (const auto& [outputs, events, temp, detail] : steps) {
        log.clear();
        EXPECT_EQ(eventsAfter(outputs), events);
        EXPECT_EQ(state().getTemp(), temp);
        EXPECT_EQ(log.count("Shell temp changed"), events.size());
        EXPECT_EQ(log.lastAfter("-1: "), detail) << temp;
    }
}

TEST_F(KelvoStateTest, saysTheThrottlingThresholdsThatNothingApplies) {
    startWithoutTemp(",'shell_temp_broadcast':['x',31,33]");
    state();
    EXPECT_EQ(log.count(ANDROID_LOG_DEBUG, "Broadcast throttling 0: 31"), 1u);
    EXPECT_EQ(log.count(ANDROID_LOG_DEBUG, "Broadcast throttling 1: 33"), 1u);
    EXPECT_FALSE(log.has("Broadcast throttling 2: 2147483647"));
}

TEST_F(KelvoStateTest, spellsTheDisplayInTwoWays) {
    start();
    for (const int32_t status : {0, 2}) {
        state().updateDisplayState(status);
        const std::string name = status == 0 ? "OFF" : "ON";
        EXPECT_EQ(log.lastAfter("Update state foreground package: "), "SCREEN." + name);
        EXPECT_EQ(log.lastAfter("Update package "), "SCREEN:" + name + " interval 5");
    }
}

TEST_F(KelvoStateTest, timesPackagesFromTheirArrivalToTheNext) {
    scenario.services.erase("charger");  // nothing to charge a package with
    start();
    const std::pair<double, const char*> switches[] = {{10, "a"}, {12.5, "b"}, {14, "b"},
                                                       {15, ""},  {20, "a"},   {21, "c"}};
    for (const auto& [time, package] : switches) {
        runUntil(time);
        state().updateState(package);
    }
    EXPECT_EQ(state().getPkgRemainTime("a"), 2 + 1);
    EXPECT_EQ(state().getPkgRemainTime("b"), 7);
    EXPECT_EQ(state().getPkgRemainTime("c"), -1) << "still in front";
    state().getPkgBatteryBigDataRecord("20260301", true);
    EXPECT_EQ(state().getPkgRemainTime("a"), -1) << "cleared";
}

TEST(UnconnectedStateTest, doesWithoutStatusCurrentAndScenes) {
    LogCapture log;
    sim::VirtualTime::start(0, 0);
    KelvoState& state = KelvoState::getInstance();
    state.updateShellTemps({{"front", 34500}}, {});
    EXPECT_EQ(log.lastAfter("0: "), "front 34500, +(5500), 40000 ");
    state.updateState("a");
    sim::VirtualTime::advanceTo(2000);
    state.updateState("b");
    state.getPkgBatteryBigDataRecord("day", false);
    EXPECT_EQ(kelvo::DataCollector::getInstance().getData(),
              parsed("{'pkgcurrent':{'day_pkgBattery':{}}}"));
    for (const int32_t opCode : {3, 4}) {
        kelvo::MessageManager::getInstance().handleMessage({9, -1, -1, opCode, "", {}, {}});
    }
    EXPECT_EQ(log.lastAfter("Reload shell fitting model config screen_fold, "),
              "Rollback scene:default, Current scene:default");
}
