#include <gtest/gtest.h>

#include <fstream>

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
    const ShellDifference shell = compare(own, other, kEndMs).shell;
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

TEST(Comparison, survivesItsWayToTheOtherProcess) {
    RunOutcome own = run({{0, 30000}, {1, kNone}}, {{5, 3}});
    own.notifications = {status(1, "a\"b", 1)};
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
