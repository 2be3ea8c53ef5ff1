#include "core/KelvoState.h"

#include "core/DataCollector.h"
#include "sim/virtual/VirtualScheduler.h"
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
    static Json::Value stored(const std::string& type, const std::string& key) {
        return kelvo::DataCollector::getInstance().getData()[type][key];
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
            {{{"board", 20000}, {"front", 40100}},
             {atom("front:40100,", 20000)},
             20000,
             "front 40100 20000, +(0), 20000 41 42"},
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

TEST_F(KelvoStateTest, spellsTheDisplayInTwoWays) {
    start();
    state().updateDisplayState(0);
    state().updateDisplayState(2);
    for (const char* line :
         {"Update state foreground package: SCREEN.OFF", "Update package SCREEN:OFF interval 5",
          "Update state foreground package: SCREEN.ON", "Update package SCREEN:ON interval 5"}) {
        EXPECT_EQ(log.count(ANDROID_LOG_INFO, line), 1u) << line;
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
    EXPECT_EQ(stored("pkgcurrent", "20260301_pkgBattery"), Json::Value(Json::objectValue));
    EXPECT_EQ(state().getPkgRemainTime("a"), -1) << "cleared";
}

TEST_F(KelvoStateTest, chargesEachPackageWithTheCurrentOfItsTime) {
    start();
    // time, current (mA, when the package leaves), next
    const std::tuple<double, int32_t, const char*> switches[] = {
            {10, 720, "a"}, {20, 1800, "b"}, {30, -360, "a"}, {40, 3599, "c"}};
    for (const auto& [time, current, next] : switches) {
        runUntil(time);
        phone().perform(sim::BatteryCurrent{current});
        state().updateState(next);
    }
    setService("charger", false);
    runUntil(50);
    state().updateState("d");
    log.clear();
    state().getPkgBatteryBigDataRecord("20260301", true);
    // a: 5, and 9.99 cut to 9, in 20 s; b: -1 in 10 s. Nothing was in front before a, and nothing
    // is known of c.
    EXPECT_EQ(stored("pkgcurrent", "20260301_pkgBattery"),
              parsed("{'a':'2520000000000_14','b':'-360000000000_-1'}"));
    EXPECT_TRUE(log.has("getBigDataRecord a:14 "));
}

TEST_F(KelvoStateTest, countsDegreesOfTheDay) {
    start(",'big_data':{'enable':1,'sample_period':10},'config_version':'v7'");
    const std::pair<int32_t, int32_t> samples[] = {
            {35999, 40999}, {36000, 41000}, {55999, 60999}, {56000, 61000}, {20000, 100}};
    double time = 0;
    for (const auto& [shell, board] : samples) {
        runUntil(time += 10);
        state().updateShellTemps({{"board", board}, {"front", shell}}, {});
        state().updateShellTemps({{"board", board}, {"front", shell}}, {});
    }
    const Json::Value record = state().getTempDataCollection();
    const std::pair<const char*, int> expected[] = {
            {"s35", 2}, {"s36", 1},     {"s55", 2},     {"b40", 2},       {"b41", 1},
            {"b60", 2}, {"max", 56000}, {"min-b", 100}, {"max-b", 61000}, {"duration", 50}};
    for (const auto& [key, value] : expected) {
        EXPECT_EQ(record[key].asInt(), value) << key;
    }
    EXPECT_EQ(record["config_version"].asString(), "v7");
    EXPECT_TRUE(record["thermal"].asBool());
    EXPECT_EQ(record["time"].asString(), "20260301080000");
}

TEST_F(KelvoStateTest, handsOverTheDayWhenItChanges) {
    scenario.startNs += int64_t{16 * 3600 - 60} * 1'000'000'000;  // a minute before midnight
    start(",'big_data':{'enable':1,'sample_period':9,'thermal_off_thousandth':1000}");
    state().updateShellTemps({{"front", 36000}}, {});
    runUntil(59.9);
    state().updateShellTemps({{"front", 36000}}, {});
    EXPECT_FALSE(log.has("Thermal off")) << "a period of 9 s is too short: 60 s hold";
    runUntil(60);
    state().updateShellTemps({{"front", 36000}}, {});
    sim::VirtualScheduler::get().handleMessages();
    EXPECT_TRUE(log.has("Thermal off")) << "1000 of 1000 days are sampled";
    EXPECT_TRUE(stored("thermal", "20260301")["thermal"].asBool()) << "the day before";
    EXPECT_TRUE(stored("pkgcurrent", "20260302_pkgBattery").isObject()) << "under the new day";
    EXPECT_FALSE(state().getTempDataCollection()["thermal"].asBool());
    EXPECT_TRUE(log.has("MessageManager handling message:2 json:"));
}
