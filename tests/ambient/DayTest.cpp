// The examples' ambient parameters find the air around their plants.

#include <android/log.h>

#include <cmath>

#include "ambient/AmbientTempWatcher.h"
#include "sim/scenario/ScenarioParser.h"
#include "support/EngineTest.h"

namespace {

/** How the estimate compares with the plant's air, once there is one. */
struct Errors {
    double rootMeanSquare = 0;  // °C
    double last = 0;            // °C, at the end
};

Errors replay(const std::string& example) {
    sim::Scenario scenario =
            sim::loadScenario(std::string(EXAMPLES) + "/" + example + "/scenario.json");
    __android_log_set_logger(
            [](const __android_logger_data*, const char*) {});  // nobody reads a whole day
    sim::VirtualPhone phone(scenario);
    EXPECT_TRUE(phone.start());
    Errors errors;
    double squares = 0;
    int count = 0;
    for (int64_t t = 0; t <= scenario.durationMs; t += 10000) {
        phone.runUntil(t);
        const int32_t estimate = kelvo::AmbientTempWatcher::getInstance().getAmbientTemp();
        if (estimate != kelvo::AmbientTempWatcher::kNoEstimate) {
            errors.last =
                    estimate - sim::valueAt(scenario.plant->ambient, static_cast<double>(t) / 1000);
            squares += errors.last * errors.last;
            ++count;
        }
    }
    EXPECT_GT(count, 0);
    errors.rootMeanSquare = std::sqrt(squares / count);
    return errors;
}

}  // namespace

TEST(ExampleAmbientTest, isFoundWhileCharging) {
    EXPECT_LE(std::abs(replay("charge").last), 1.5);
}

TEST(ExampleAmbientTest, isFollowedForADay) {
    const Errors errors = replay("day");
    RecordProperty("root_mean_square_error", std::to_string(errors.rootMeanSquare));
    EXPECT_LT(errors.rootMeanSquare, 1.3) << "steps of the air and the minutes after them included";
}
