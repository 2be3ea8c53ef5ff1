#include "thermalstatus/KelvoThermalStatus.h"

#include "common/ConfigStore.h"
#include "config/KelvoConfig.h"
#include "sim/scenario/PhonePaths.h"
#include "sim/virtual/VirtualScheduler.h"
#include "support/EngineTest.h"

namespace {

std::string list(int first, int count = 21) {
    std::string text = "[";
    for (int i = 0; i < count; ++i) {
        text += (i > 0 ? "," : "") + std::to_string(first + i);
    }
    return text + "]";
}

// Thresholds 30, 31, … °C and 29, 30, … °C; the status is 100 above the level.
struct KelvoThermalStatusTest : EngineTest {
    /** By their places: temp_threshold, thermal_status, …_report, temp_threshold_down. */
    using Model = std::array<std::string, 4>;
    const Model kGood = {list(30), list(100), "[1]", list(29)};

    /** An empty text leaves a list out. */
    static std::string section(const Model& model) {
        constexpr const char* kNames[] = {"temp_threshold", "thermal_status",
                                          "thermal_status_report", "temp_threshold_down"};
        std::string text = ",'thermal_status_model':{'x':0";
        for (size_t i = 0; i < model.size(); ++i) {
            text += model[i].empty() ? "" : std::string(",'") + kNames[i] + "':" + model[i];
        }
        return text + "}";
    }
    void start(const std::string& broadcast = "null") {
        startWithoutTemp(section(kGood) + ",'shell_temp_broadcast':" + broadcast);
        phone().perform(sim::Listen{"l", 10050});
        takeCalls();
    }
    /** What it says of the model, at error level. */
    Lines reloadWith(const Model& model) {
        phone().tree().setNode(
                sim::kMainConfigPath,
                common::encryptConfig(json("{'temp_threshold_down':0" + section(model) + "}")));
        kelvo::KelvoConfig::getInstance().reload();
        log.clear();
        const int result = engine().reload();
        Lines errors;
        for (const LogCapture::Line& line : log.lines()) {
            if (line.priority == ANDROID_LOG_ERROR) {
                errors.push_back(line.text);
            }
        }
        EXPECT_EQ(result, errors.empty() ? 0 : -1);
        return errors;
    }
    Lines callsAt(int32_t temp) {
        engine().onShellTempChanged(temp);
        sim::VirtualScheduler::get().handleMessages();
        return takeCalls();
    }
    static std::vector<size_t> sizes() {
        std::vector<int> lists[3];
        EXPECT_EQ(engine().getConfig(lists[0], lists[1], lists[2]), 0);
        return {lists[0].size(), lists[1].size(), lists[2].size()};
    }
    static KelvoThermalStatus& engine() { return KelvoThermalStatus::getInstance(); }
};

}  // namespace

TEST_F(KelvoThermalStatusTest, broadcastsAroundItsUsualBand) {
    start("[35,'x',40]");
    EXPECT_TRUE(log.has("Broadcast throttling 0: 35") && log.has("Broadcast throttling 1: 40"))
            << "the array is for the throttling, and no band";
    // temp, calls, why
    const std::tuple<int32_t, Lines, const char*> steps[] = {
            {29999, {"status 100"}, "the first decision always tells; below the band"},
            {30200, {"broadcast 100 30200"}, "30.2 is in the hold band of level 0"},
            {39600, {"status 109", "broadcast 109 39600"}, "several levels at once"},
            {39900, {}, "the same whole degree"},
            {55999, {"status 120", "broadcast 120 55999"}, "the upper end"},
            {56000, {"broadcast 120 56000"}, "leaving the band"},
            {57000, {}, "outside it"},
            {20000, {"status 100", "broadcast 100 20000"}, "all the way down"},
    };
    for (const auto& [temp, calls, why] : steps) {
        EXPECT_EQ(callsAt(temp), calls) << temp << " " << why;
    }
}

TEST_F(KelvoThermalStatusTest, saysWhatItLoadsAndDecides) {
    start();
    for (const char* line : {"Thermal status threshold 0: 30", "Thermal status threshold 20: 50",
                             "Thermal status area 20: 120", "Thermal status down threshold 20: 49",
                             "thermal status: {", "\tstatus_report: 1"}) {
        EXPECT_EQ(log.count(ANDROID_LOG_DEBUG, line), 1u) << line;
    }
    EXPECT_EQ(log.countOf("Thermal status "), 3u * 21u);
    const std::string last = "kelvoCallback mLastThermalLevel:";
    // temp, how many lines, and of them the last
    const std::tuple<int32_t, size_t, std::string> steps[] = {
            {29000, 2, last + "-1, i:0, mDefaultTS.tripTemps:30 "},
            {28000, 2, "ctemp <= mDefaultTS.tripDownTemps[0]"},
            {30000, 2, "kelvoCallback mLastThermalLevel: 0, tripTemps:31, DownThreshold:29 "},
            {41000, 3, last + "0, i:11, mDefaultTS.tripTemps:41 "},
            {39000, 3, last + "11, i:10, mDefaultTS.tripTemps:40 "},
            {55000, 3, last + "10, i:20, mDefaultTS.tripTemps:50 "},
            {49000, 2, "ctemp >= mDefaultTS.tripDownTemps[20]"},
    };
    for (const auto& [temp, count, line] : steps) {
        log.clear();
        callsAt(temp);
        EXPECT_EQ(log.count(ANDROID_LOG_DEBUG, line), 1u) << line;
        EXPECT_EQ(log.countOf("kelvoCallback ") + log.countOf("ctemp ") -
                          log.countOf("kelvoCallback Broadcast"),
                  count)
                << temp;
    }
}

TEST_F(KelvoThermalStatusTest, refusesTheModelForEachOfItsLists) {
    // which list, what is said of what it holds, and that it cannot be had
    const std::tuple<size_t, const char*, const char*> lists[] = {
            {0, "Wrong trip temp config", "Get trip temp faild."},
            {1, "Wrong thermal status area config", "Get thermal status area faild."},
            {2, "Wrong trip temp config", "Get thermal status report faild."},
            {3, "Wrong trip down temp config", "Get trip down temp faild."},
    };
    // what it holds, whether something is said of that, and where it falls
    const std::tuple<std::string, bool, std::string> defects[] = {
            {"", false, ""},
            {"{'a':1}", false, ""},
            {"7", false, ""},
            {"null", false, ""},
            {"[]", true, ""},
            {"['x',1.5]", true, ""},
            {"[30,25]", true, "config[i-1] i=1, value=30"},
            {"[-1,30,'x',-1,31," + list(30, 16).substr(1), true, "config[i-1] i=4, value=31"},
    };
    start();
    callsAt(41000);
    for (const auto& [which, wrong, failed] : lists) {
        for (const auto& [value, isSaid, falls] : defects) {
            Model model = kGood;
            model[which] = value;
            Lines said = {failed, "Parse thermal status config faild."};
            said.insert(said.begin(), isSaid ? 1 : 0, wrong);
            said.insert(said.begin(), falls.empty() ? 0 : 1, falls);
            EXPECT_EQ(reloadWith(model), said) << which << " " << value;
            EXPECT_EQ(sizes(), (std::vector<size_t>{0, 0, 0})) << "nor the lists of before";
            EXPECT_EQ(engine().getThermalStatus(), -1);
        }
    }
    EXPECT_EQ(callsAt(45000), Lines{"broadcast -1 45000"}) << "no decision";
    EXPECT_EQ(log.errors("thermal_status_model is wrong! tripTemps:0, tripDownTemps:0 "), 1u);
    EXPECT_EQ(reloadWith(kGood), Lines{});
    EXPECT_EQ(callsAt(40500), Lines{"broadcast -1 40500"}) << "the level is kept over all that";
    EXPECT_EQ(callsAt(45000), (Lines{"status 115", "broadcast 115 45000"}));
}

TEST_F(KelvoThermalStatusTest, decidesNothingByListsOfOtherLengths) {
    start();
    // lengths of trip, area and down
    const std::tuple<int, int, int> rows[] = {{20, 20, 21}, {21, 21, 22}, {22, 22, 20}, {1, 1, 1}};
    int32_t temp = 41000;
    for (const auto& [trip, area, down] : rows) {
        EXPECT_EQ(reloadWith({list(30, trip), list(100, area), "[1]", list(29, down)}), Lines{});
        EXPECT_EQ(callsAt(temp += 1000).size(), 1u) << "the broadcast";
        EXPECT_EQ(log.errors("thermal_status_model is wrong! tripTemps:" + std::to_string(trip) +
                             ", tripDownTemps:" + std::to_string(down) + " "),
                  1u);
    }
    for (const int area : {20, 22}) {
        EXPECT_EQ(reloadWith({list(30), list(100, area), "[1]", list(29)}),
                  (Lines{"Invalid temp threshold.", "Parse thermal status config faild."}));
        EXPECT_EQ(sizes(), (std::vector<size_t>{0, 0, 0}));
    }
}
