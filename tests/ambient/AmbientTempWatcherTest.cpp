#include "ambient/AmbientTempWatcher.h"

#include <limits>

#include "support/EngineTest.h"

using kelvo::AmbientTempWatcher;
namespace {

constexpr int32_t kNone = AmbientTempWatcher::kNoEstimate;
constexpr char kGap[] = "AmbientTempWatcher clear recorded data: time is not continuous.";
constexpr char kSwitched[] = "AmbientTempWatcher clear recorded data: status changed.";
constexpr char kNotReady[] =
        "AmbientTempWatcher mAmbientCoeffs is empty or checkAvailableStats is false.";

/** The estimator fed by the test; the fitting engine gives it nothing. */
struct AmbientTempWatcherTest : EngineTest {
    AmbientTempWatcherTest() { addZone("skin", 30000); }

    void start() {
        setScenes(scene("default", 0, "skin") + ",'ambient':{" + kAmbientFitting + "}");
        startPhone();
        phone().perform(sim::Listen{"app"});
    }
    void round(int32_t temp, int32_t power = 0, int64_t afterSeconds = 5) {
        runUntil(static_cast<double>(phone().now()) / 1000 + static_cast<double>(afterSeconds));
        AmbientTempWatcher::getInstance().updateAmbientTemp(temp, power);
        phone().perform(sim::SetProperties{});  // and the messages that have been posted
    }
    void rounds(int count, int32_t temp, int32_t power = 0) {
        for (int i = 0; i < count; ++i) {
            round(temp, power);
        }
    }
    /** The first round ever only sets the clock; then the window is filled. */
    void fill(int32_t temp) {
        rounds(13, temp);
        EXPECT_TRUE(isFull());
    }
    /** `failures` counts the sections that lack the arrays. */
    void expectNoEstimate(const std::string& fitting, size_t failures) {
        setScenes(scene("default", 0, "skin") + ",'ambient':{'temp_model':{" +
                  model("air", 7, "skin") + "," + model("power", 8, "skin") +
                  "},'ambient_fitting':" + fitting + "}");
        startPhone();
        runUntil(70);
        EXPECT_FALSE(log.has(kNotReady)) << "the fitting engine does not ask";
        round(25000);
        EXPECT_EQ(log.errors("parse ambient fitting parameters failed: ambient"), failures);
        EXPECT_EQ(log.errors("get ambient fitting param failed."), 1u);
        EXPECT_EQ(log.errors(kNotReady), 1u);
        EXPECT_EQ(ambient(), kNone);
    }
    static bool isFull() {
        int temp, time;
        return AmbientTempWatcher::getInstance().getAmbientTempInfo(temp, time);
    }
    static int32_t ambient() { return AmbientTempWatcher::getInstance().getAmbientTemp(); }

    /** Ambient temperatures that the listener has been told. */
    Lines takeAnnounced() {
        Lines calls = takeCalls();
        std::erase_if(calls, [](const std::string& call) { return !call.starts_with("thermal"); });
        return calls;
    }
};

}  // namespace

TEST_F(AmbientTempWatcherTest, estimatesWithTheTwelfthRoundAndThenWithEveryTwelfthEstimate) {
    start();
    rounds(12, 25000);
    EXPECT_EQ(log.count(kGap), 1u) << "the first round ever";
    EXPECT_EQ(ambient(), kNone);
    EXPECT_FALSE(isFull());
    round(25000);
    EXPECT_EQ(ambient(), 25);
    int temp, time;
    ASSERT_TRUE(AmbientTempWatcher::getInstance().getAmbientTempInfo(temp, time));
    EXPECT_EQ(temp, 25);
    EXPECT_EQ(time, 165) << "65 s after the start, on the monotonic clock";
    rounds(10, 26100);
    EXPECT_EQ(ambient(), 25);
    round(26100);
    EXPECT_EQ(ambient(), 25) << "the mean of ten of 25 × 6 and 26 × 6, cut";
    rounds(11, 26100);
    EXPECT_EQ(ambient(), 25);
    round(26100);
    EXPECT_EQ(ambient(), 26);
}

TEST_F(AmbientTempWatcherTest, announcesTheFirstEstimateAndChangesOfThree) {
    start();
    fill(0);  // announced whatever its value
    const std::pair<int32_t, Lines> rows[] = {
            {0, {"thermal 0"}}, {2, {}}, {3, {"thermal 3"}}, {1, {}}, {0, {"thermal 0"}}};
    for (const auto& [temp, announced] : rows) {
        rounds(30, 1000 * temp);
        EXPECT_EQ(ambient(), temp);
        EXPECT_EQ(takeAnnounced(), announced) << temp;
    }
}

TEST_F(AmbientTempWatcherTest, keepsTheEstimateWhenItClearsTheRecord) {
    start();
    fill(25000);
    round(25000, 0, 7500);
    EXPECT_TRUE(isFull());
    round(25000, 0, 7501);
    EXPECT_FALSE(isFull());
    EXPECT_EQ(log.errors(kGap), 2u);
    EXPECT_EQ(ambient(), 25);
    rounds(12, 30000);
    EXPECT_TRUE(isFull());
    EXPECT_EQ(ambient(), 25) << "only the twelfth estimate counts now";
    rounds(11, 30000);
    EXPECT_EQ(ambient(), 30);
    phone().perform(sim::Health{.ac = true});
    round(30000);
    EXPECT_FALSE(isFull());
}

TEST_F(AmbientTempWatcherTest, hasNothingToTellWhileTheTemperatureChanges) {
    start();
    rounds(7, 20000);
    rounds(6, 21200);
    EXPECT_EQ(ambient(), kNone) << "six slopes of 40";
    EXPECT_FALSE(isFull());
}

TEST_F(AmbientTempWatcherTest, keepsItsSamplesWhenItDoesNotKnowTheModel) {
    start();
    fill(25000);
    auto& watcher = AmbientTempWatcher::getInstance();
    watcher.switchFittingParameter("ambient_fold");
    EXPECT_TRUE(isFull());
    EXPECT_FALSE(log.has(kSwitched));
    watcher.switchFittingParameter("ambient");
    EXPECT_FALSE(isFull());
    EXPECT_TRUE(log.has(kSwitched));
}

TEST_F(AmbientTempWatcherTest, survivesExtremesOfTheCharger) {
    std::string params = kAmbientFitting;
    params.replace(params.find("'const_coeff'"), 13, "'const_coeff','battery_current_coeff'");
    params.replace(params.find("0,0,0]"), 6, "0,1e9,0,1e9]");
    setScenes(scene("default", 0, "skin") + ",'ambient':{" + params + "}");
    startPhone();
    for (const int32_t current :
         {std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max()}) {
        phone().perform(sim::BatteryCurrent{current});
        for (const int32_t temp : {current, ~current, current}) {
            rounds(30, temp, current);
        }
    }
    EXPECT_TRUE(
            log.has("AmbientTempWatcher clear recorded data: charge current:178956970 over "
                    "threshold."));
    // A HAL that hangs up is like none: the current is -1.
    setService("charger", false);
    round(25000);
    EXPECT_TRUE(log.has("ChargerProxyService just died"));
    EXPECT_TRUE(log.has("unable to get Charger service"));
}

// All that makes them bad is a matter of AmbientParams.
TEST_F(AmbientTempWatcherTest, estimatesNothingWithoutParameters) {
    expectNoEstimate("null", 1);
}

TEST_F(AmbientTempWatcherTest, estimatesNothingWithEmptyParameters) {
    expectNoEstimate("{'paramter_name':[],'coefficient':[]}", 0);
}

TEST_F(AmbientTempWatcherTest, namesTheSceneOfANewProjectThatFails) {
    const std::string models =
            "'temp_model':{" + model("air", 7, "skin") + "," + model("power", 8, "skin") + "}";
    setScenes(scene("default", 0, "skin") + ",'ambient':{" + models + "," + kAmbientFitting +
              "},'ambient_charge':{" + models + "}");
    startPhone();
    runUntil(20);
    EXPECT_EQ(log.errors("parse ambient fitting parameters failed: ambient_charge"), 1u);
    EXPECT_EQ(log.errors("parse ambient_charge fitting param failed."), 1u);
    EXPECT_FALSE(log.has(kNotReady)) << "the fitting engine does not ask again";
}
