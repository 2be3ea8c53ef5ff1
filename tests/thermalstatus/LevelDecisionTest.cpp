#include "thermalstatus/LevelDecision.h"

#include <gtest/gtest.h>

using kelvo::LevelDecision;
using kelvo::LevelState;
using Rule = LevelDecision::Rule;

namespace {

constexpr int32_t kNone = -100;  // no threshold

/** Rises to level k at 30 + k °C and falls below it under 28 + k °C; its status is 100 + k. */
kelvo::ThermalStatusModel model() {
    kelvo::ThermalStatusModel model;
    for (int32_t level = 0; level < static_cast<int32_t>(kelvo::kThermalLevels); ++level) {
        model.tripTemps.push_back(30 + level);
        model.tripDownTemps.push_back(28 + level);
        model.statusAreas.push_back(100 + level);
    }
    return model;
}

int32_t celsiusOf(const std::optional<LevelDecision::Threshold>& threshold) {
    return threshold ? threshold->celsius : kNone;
}

bool isRising(const std::optional<LevelDecision::Threshold>& threshold) {
    return threshold && threshold->rising;
}

}  // namespace

TEST(LevelDecisionTest, decidesOnBothSidesOfEachBoundary) {
    const struct {
        int32_t level, levelTemp, temp;
        Rule rule;
        int32_t newLevel, newLevelTemp, below, above;
        const char* why;
    } cases[] = {
            {5, 35, 35999, Rule::IN_BAND, 5, 35, 33, 36, "just below the next level"},
            {5, 35, 36000, Rule::RISING, 6, 36, 36, 37, "at it"},
            {5, 35, 33001, Rule::IN_BAND, 5, 35, 33, 36, "just above the own falling threshold"},
            {5, 35, 33000, Rule::FALLING, 5, 33, 33, 34, "at it: searched, and found again"},
            {5, 35, 32999, Rule::FALLING, 4, 32, 32, 33, "below it"},
            {5, 36, 36000, Rule::RISING, 6, 36, 36, 37, "as warm as at the last search is rising"},
            {5, 37, 36000, Rule::FALLING, 8, 36, 36, 37, "cooler: by the falling thresholds, up"},
            {19, 49, 49999, Rule::IN_BAND, 19, 49, 47, 50, "below the top"},
            {19, 49, 50000, Rule::RISING, 20, 50, 50, kNone, "at the top"},
            {20, 55, 48000, Rule::AT_TOP, 20, 55, 48, kNone, "the top holds at its threshold"},
            {20, 40, 99000, Rule::AT_TOP, 20, 40, 48, kNone, "and at any above"},
            {20, 55, 47999, Rule::FALLING, 19, 47, 47, 48, "but not below"},
            {0, 29, 30999, Rule::IN_BAND, 0, 29, 28, 31, "level 0, below level 1"},
            {0, 29, 31000, Rule::RISING, 1, 31, 31, 32, "at level 1"},
            {0, 29, 28001, Rule::IN_BAND, 0, 29, 28, 31, "level 0, above its own threshold"},
            {0, 29, 28000, Rule::AT_BOTTOM, 0, 29, kNone, 28, "at it: no search"},
            {1, 31, 28999, Rule::FALLING, 0, 28, kNone, 29, "down to the bottom"},
            {-1, -1, 30999, Rule::RISING, 0, 30, kNone, 31, "the first is always a search"},
            {-1, -1, 99000, Rule::RISING, 20, 99, 50, kNone, "also to the top"},
            {-1, -1, -1000, Rule::RISING, 0, -1, kNone, 31, "as warm as the -1 from before"},
            {-1, -1, -1999, Rule::FALLING, 0, -1, kNone, 29, "cooler; cut toward zero"},
    };
    for (const auto& test : cases) {
        const LevelState state{test.level, test.levelTemp, 7};
        const LevelDecision decision = kelvo::decideLevel(model(), state, test.temp);
        const LevelState outcome = decision.outcome();
        EXPECT_EQ(decision.rule, test.rule) << test.why;
        EXPECT_EQ(outcome.level, test.newLevel) << test.why;
        EXPECT_EQ(outcome.levelTemp, test.newLevelTemp) << test.why;
        EXPECT_EQ(outcome.status, test.newLevel != test.level ? 100 + test.newLevel : 7)
                << test.why;
        EXPECT_EQ(celsiusOf(decision.below), test.below) << test.why;
        EXPECT_EQ(celsiusOf(decision.above), test.above) << test.why;
        EXPECT_EQ(isRising(decision.below), test.below != kNone && test.rule == Rule::RISING);
        EXPECT_EQ(isRising(decision.above),
                  test.above != kNone && (test.rule == Rule::RISING || test.rule == Rule::IN_BAND));
    }
}

TEST(LevelDecisionTest, reachesAWildcardAtAnyTemperatureAndNeverComparesEntryZero) {
    kelvo::ThermalStatusModel odd = model();
    odd.tripTemps[0] = 99;
    odd.tripTemps[3] = kelvo::kWildcard;
    const LevelState first;
    EXPECT_EQ(kelvo::decideLevel(odd, first, 20000).newLevel, 3);
    EXPECT_EQ(kelvo::decideLevel(odd, first, -2000).newLevel, 0) << "falling: the other list";
    odd.tripTemps[3] = 33;
    EXPECT_EQ(kelvo::decideLevel(odd, first, 20000).newLevel, 0);
}

TEST(LevelDecisionTest, keepsTheStatusOfALevelThatHasNone) {
    kelvo::ThermalStatusModel few = model();
    few.statusAreas.resize(6);
    EXPECT_EQ(kelvo::decideLevel(few, {4, 34, 104}, 35000).newStatus, 105);
    const LevelDecision decision = kelvo::decideLevel(few, {5, 35, 105}, 36000);
    EXPECT_TRUE(decision.changesLevel());
    EXPECT_EQ(decision.newStatus, 105);
}
