// What holds for thermal levels and the limits of the fitting whatever the temperatures are.

#include "Property.h"
#include "shelltemp/FittingLimits.h"
#include "shelltemp/ShellTempFitting.h"
#include "support/EngineTest.h"
#include "thermalstatus/LevelDecision.h"

namespace {

using namespace kelvo;

constexpr int32_t kShaking = 501;  // m°C/s, the slowest change that is limited

std::vector<int32_t> anyThresholds(Draws& draws) {
    std::vector<int32_t> list(kThermalLevels, draws.in(0, 40));
    for (size_t i = 1; i < list.size(); ++i) {
        list[i] = list[i - 1] + draws.in(0, 4);
    }
    return list;
}

/** Whether each decision of a row of them agrees with the one before it. */
template <typename Holds>
bool decideInARow(const ThermalStatusModel& model, Draws& draws, Holds holds) {
    LevelDecision before = decideLevel(model, {0, 0, 0}, draws.in(-10'000, 120'000));
    for (int i = 0; i < 60; ++i) {
        const LevelDecision made = decideLevel(model, before.outcome(), draws.in(-10'000, 120'000));
        if (!holds(before, made)) {
            return false;
        }
        before = made;
    }
    return true;
}

PROPERTY(LevelProperties, levelNeverChangesInsideItsHoldBand, 200) {
    const ThermalStatusModel model{anyThresholds(draws), {}, {}, anyThresholds(draws)};
    return decideInARow(model, draws, [&](const LevelDecision&, const LevelDecision& made) {
        const auto level = static_cast<size_t>(made.oldLevel);
        const double celsius = made.temp / 1000.0;
        const bool isInBand = level + 1 < kThermalLevels && celsius < model.tripTemps[level + 1] &&
                              celsius > model.tripDownTemps[level];
        return !isInBand || made.newLevel == made.oldLevel;
    });
}

PROPERTY(LevelProperties, risingInputNeverLowersALevelAndFallingInputNeverRaisesIt, 200) {
    ThermalStatusModel model{anyThresholds(draws), {}, {}, anyThresholds(draws)};
    std::ranges::transform(
            model.tripDownTemps, model.tripTemps, model.tripDownTemps.begin(),
            [](int32_t falling, int32_t rising) { return std::min(falling, rising); });
    return decideInARow(model, draws, [](const LevelDecision& before, const LevelDecision& made) {
        return made.temp > before.temp ? made.newLevel >= made.oldLevel
                                       : made.newLevel <= made.oldLevel;
    });
}

PROPERTY(LimitProperties, limitedValueGoesTowardsTheFittedOneNoFasterThanItsLimit, 2000) {
    const int32_t previous = draws.in(-40'000, 115'000);
    const int32_t value = draws.in(-40'000, 115'000);
    const int32_t seconds = draws.in(1, 60);
    DeltaHistory history;
    int32_t fastest = 125;  // m°C/s, of a steady shell
    for (int32_t i = draws.in(0, 7); i > 0; --i) {
        recordDelta(history, draws.in(0, 400));
        fastest = std::max(fastest, 2 * history.back());
    }
    const LimitedValue made = limitJump(previous, value, seconds, history);
    const int32_t speed = std::abs(made.value - previous) / seconds;
    const auto [low, high] = std::minmax(previous, value);
    return low <= made.value && made.value <= high && history.size() <= 5 &&
           (made.limited ? speed <= std::min(fastest, 500)
                         : speed < kShaking && made.value == value);
}

using ShellProperties = EngineTest;

TEST_F(ShellProperties, shellNeverMovesFasterThanHalfADegreeASecond) {
    constexpr int32_t kPass = 5;  // s
    addZone("skin", 30000);
    setScenes(::scene("default", 0, "skin"));
    startPhone();
    double now = kPass;
    runUntil(now);
    const auto shell = [] { return ShellTempFitting::getInstance().getFittingTemps().at(0); };
    const auto staysSlow = [&](Draws& draws) {
        const int32_t before = shell();
        setTemp(0, draws.in(-39'000, 114'000));
        runUntil(now += kPass);
        return std::abs(shell() - before) < kShaking * kPass;
    };
    EXPECT_EQ(counterexample(staysSlow, 800), "");
}

}  // namespace
