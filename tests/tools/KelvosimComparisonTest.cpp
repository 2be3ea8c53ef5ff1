#include <gmock/gmock.h>

#include <cmath>
#include <fstream>
#include <sstream>

#include "comparison/ComparisonText.h"

namespace {

constexpr int64_t kEndMs = 10000;
constexpr std::optional<int32_t> kNone;

struct Step {
    int64_t timeMs;
    std::optional<int32_t> value;
};

void fill(Series& series, const std::vector<Step>& steps) {
    for (const Step& step : steps) {
        series.add(step.timeMs, step.value);
    }
}

RunOutcome run(const std::vector<Step>& shell, const std::vector<Step>& status = {}) {
    RunOutcome outcome;
    fill(outcome.shell, shell);
    fill(outcome.status, status);
    return outcome;
}

Notification status(int64_t timeMs, const std::string& listener, int value) {
    return {timeMs, listener, "notify_thermal_status", {{"status", value}}};
}

TEST(Comparison, weighsTheShellByTime) {
    const RunOutcome own = run({{0, 30000}, {5000, 32000}});
    const RunOutcome other = run({{0, kNone}, {2000, 30000}, {6000, 29000}});
    const FigureDifference shell = compare(own, other, kEndMs).shell;
    EXPECT_EQ(shell.first->fromMs, 0) << "a missing figure is a difference";
    EXPECT_EQ(shell.first->toMs, 2000);
    EXPECT_EQ(shell.largest->fromMs, 6000);
    EXPECT_EQ(shell.comparedMs, kEndMs + 1 - 2000);
    EXPECT_EQ(shell.differentMs, 2000 + kEndMs + 1 - 5000);
    const double expected = (1000 * 2000 + 4001 * 3000) / 8001.0;
    EXPECT_DOUBLE_EQ(shell.meanAbsolute, expected);
    EXPECT_DOUBLE_EQ(shell.meanSigned, -expected);
}

TEST(Comparison, listsTheTimesOfOtherStatuses) {
    const auto statuses =
            compare(run({}, {{0, 0}, {3000, 1}, {kEndMs, 2}}), run({}, {{0, 0}, {4000, 1}}), kEndMs)
                    .statuses;
    ASSERT_EQ(statuses.size(), 2U);
    EXPECT_EQ(statuses[0].fromMs, 3000);
    EXPECT_EQ(statuses[0].toMs, 4000);
    EXPECT_EQ(statuses[0].other, 0);
    EXPECT_EQ(statuses[1].fromMs, kEndMs) << "what is due at the end still happens";
}

TEST(Comparison, findsEachNotificationAgain) {
    RunOutcome own = run({});
    RunOutcome other = run({});
    own.notifications = {status(1, "a", 1), status(2, "a", 2), status(3, "a", 3),
                         status(9, "a", 4)};
    other.notifications = {status(1, "a", 1), status(2, "a", 5), status(4, "a", 3),
                           status(9, "b", 4)};
    const Comparison result = compare(own, other, kEndMs);
    using Counts = std::array<int64_t, kFates>;
    EXPECT_EQ(result.counts.at("notify_thermal_status"), (Counts{1, 1, 1, 1, 1}));
    std::vector<Fate> fates;
    for (const NotificationDifference& difference : result.notifications) {
        fates.push_back(difference.fate);
    }
    using enum Fate;
    EXPECT_EQ(fates, (std::vector{OTHER_VALUES, OTHER_TIME, ONLY_OWN, ONLY_OTHER}));
}

TEST(Comparison, findsWhatOnlyOneOutputSays) {
    // One more figure, and what the text has to say of it; the rest is the same.
    const std::pair<void (*)(RunOutcome&), const char*> cases[] = {
            {[](RunOutcome& o) {
                 fill(o.models.at(0), {{0, 30000}, {9000, 31350}});
             },
             "differ: model back\n|model back (°C)\n  first differs  9.000 s: 30.000, other "
             "31.350\n"
             "  largest        9.000 s: 30.000, other 31.350 (+1.350)\n"},
            {[](RunOutcome& o) { o.models.emplace_back("front", "m°C").add(5, 1); },
             "differ: model front\n|model front (°C)\n  first differs  0.005 s: -, other 0.001\n|"
             "model back: the same\n"},
            {[](RunOutcome& o) { o.ambient.add(1000, 25000); },
             "differ: ambient temperature\n|  first differs  1.000 s: -, other 25.000\n"},
            {[](RunOutcome& o) { o.scene.add(2000, "flashon"); },
             "differ: scene\n|  2.000 to 10.000 s                 default         flashon\n"},
            {[](RunOutcome& o) { o.heatSource.add(2000, "cpu"); },
             "differ: heat\n|main heat source|  2.000 to 10.000 s                       -          "
             "   cpu\n"},
            {[](RunOutcome& o) { o.heat.emplace_back("cpu", "m°C").add(2000, 7); },
             "differ: heat\n|heat of cpu (°C)\n"},
    };
    RunOutcome own = run({{0, 30000}});
    fill(own.models.emplace_back("back", "m°C"), {{0, 30000}});
    own.scene.add(0, "default");
    for (const auto& [change, parts] : cases) {
        RunOutcome other = own;
        change(other);
        const Comparison comparison = compare(own, other, kEndMs);
        EXPECT_FALSE(comparison.identical());
        std::ostringstream text;
        writeComparison(text, own, {"o.json", "", other, comparison}, "s.json");
        std::istringstream expected(parts);
        for (std::string part; std::getline(expected, part, '|');) {
            EXPECT_THAT(text.str(), testing::HasSubstr(part));
        }
    }
}

TEST(ModelError, isTakenOverThePassesThatHaveBoth) {
    Recording recording;
    recording.zones.emplace_back("lab-back", "m°C");
    fill(recording.zones[0], {{0, 29000}, {2000, kNone}, {3000, 30000}});
    int32_t value = 30000;
    for (const int64_t time : {0, 1000, 2000, 3000}) {
        kelvo::FittingPass pass;
        pass.scene = "default";
        pass.models = {{4, "back", {}, 0.0, value, value}};
        pass.outputs = {{4, value, value, std::nullopt, value, true, true}};
        recording.passes.add(time, pass);
        value -= 1000;
    }
    // 30 and 29 against 29, 28 against nothing, 27 against 30
    const std::vector<ModelError> errors = modelErrors(recording);
    ASSERT_EQ(errors.size(), 1U);
    EXPECT_EQ(errors[0].model + " " + errors[0].truth, "back lab-back");
    EXPECT_EQ(errors[0].passes, 3);
    EXPECT_EQ(errors[0].largest, -3000);
    EXPECT_EQ(errors[0].largestMs, 3000);
    EXPECT_NEAR(errors[0].bias, -2000 / 3.0, 1e-9);
    EXPECT_NEAR(errors[0].rms, std::sqrt(10e6 / 3), 1e-9);
}

TEST(Comparison, survivesItsWayToTheOtherProcess) {
    RunOutcome own = run({{0, 30000}, {1, kNone}}, {{5, 3}});
    own.notifications = {status(1, "a\"b", 1)};
    fill(own.models.emplace_back("back", "m°C"), {{0, 30000}, {7, kNone}});
    own.heat.emplace_back("cpu", "m°C").add(1, -1);
    own.ambient.add(3, 25000);
    own.scene.add(0, "default");
    own.heatSource.add(4, "cpu");
    const std::string file = testing::TempDir() + "/outcome-" + std::to_string(getpid());
    {
        std::ofstream out(file);
        writeOutcome(out, own);
    }
    const Comparison result = compare(own, readOutcome(file), kEndMs);
    remove(file.c_str());
    EXPECT_TRUE(result.identical());
    EXPECT_EQ(result.counts.at("notify_thermal_status")[0], 1);
}

}  // namespace
