#include "ambient/AmbientTempWatcher.h"

#include <limits>

#include "service/ServiceCodes.h"
#include "support/EngineTest.h"

using kelvo::AmbientTempWatcher;

namespace {

constexpr int32_t kNone = AmbientTempWatcher::kNoEstimate;
constexpr char kGap[] = "AmbientTempWatcher clear recorded data: time is not continuous.";
constexpr char kPowerDiff[] = "AmbientTempWatcher clear recorded data: power_diff over threshold.";
constexpr char kCharge[] = "AmbientTempWatcher clear recorded data: invalid charge status.";
constexpr char kSwitched[] = "AmbientTempWatcher clear recorded data: status changed.";
constexpr char kNotReady[] =
        "AmbientTempWatcher mAmbientCoeffs is empty or checkAvailableStats is false.";

const std::string kParams =
        "'ambient_fitting':{"
        "'paramter_name':['temp_coeff','tempSlope_coeff','power_coeff','const_coeff'],"
        "'coefficient':[0.001,0,0,0],'temp_rate_threshold':40.0,'power_diff_threshold':500.0}";

/** The estimator fed by the test; the fitting engine gives it nothing. */
class AmbientTempWatcherTest : public EngineTest {
  protected:
    AmbientTempWatcherTest() { addZone("skin", 30000); }

    /** Old: only "ambient". New: "ambient_charge" as well, with models. */
    void start(bool isNew = false) {
        const std::string models = "'temp_model':{" + model("m", 7, "skin") + "},";
        setScenes(scene("default", 0, "skin") + ",'ambient':{" + (isNew ? models : "") + kParams +
                  "}" + (isNew ? ",'ambient_charge':{" + models + kParams + "}" : ""));
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
    static bool isFull() {
        int temp = 0;
        int time = 0;
        return AmbientTempWatcher::getInstance().getAmbientTempInfo(temp, time);
    }
    static int32_t ambient() { return AmbientTempWatcher::getInstance().getAmbientTemp(); }

    /** Ambient temperatures that the listener has been told. */
    std::vector<std::string> takeAnnounced() {
        std::vector<std::string> calls = takeCalls();
        std::erase_if(calls, [](const std::string& call) { return !call.starts_with("thermal"); });
        return calls;
    }
    using Calls = std::vector<std::string>;
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
    int temp = 0;
    int time = 0;
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
    fill(0);
    EXPECT_EQ(takeAnnounced(), Calls{"thermal 0"}) << "whatever its value";
    rounds(30, 2000);
    EXPECT_EQ(ambient(), 2);
    EXPECT_EQ(takeAnnounced(), Calls{});
    rounds(30, 3000);
    EXPECT_EQ(ambient(), 3);
    EXPECT_EQ(takeAnnounced(), Calls{"thermal 3"});
    EXPECT_TRUE(log.has("ambient thermal notify temp:3"));
}

TEST_F(AmbientTempWatcherTest, keepsTheEstimateWhenItClearsTheRecord) {
    start();
    fill(25000);
    round(25000, 0, 7500);
    EXPECT_TRUE(isFull());
    round(25000, 0, 7501);
    EXPECT_FALSE(isFull());
    EXPECT_EQ(log.count(ANDROID_LOG_ERROR, kGap), 2u);
    EXPECT_EQ(ambient(), 25);
    rounds(12, 30000);
    EXPECT_TRUE(isFull());
    EXPECT_EQ(ambient(), 25) << "only the twelfth estimate counts now";
    rounds(11, 30000);
    EXPECT_EQ(ambient(), 30);
}

TEST_F(AmbientTempWatcherTest, clearsWhenTheBatteryIsChargedTooFast) {
    start();
    phone().perform(sim::BatteryCurrent{-2728});
    fill(25000);
    phone().perform(sim::BatteryCurrent{-2729});
    rounds(3, 25000);
    EXPECT_TRUE(isFull()) << "30011 / 12 is 2500";
    round(25000);
    EXPECT_FALSE(isFull()) << "30012 / 12 is 2501";
    EXPECT_EQ(log.count(ANDROID_LOG_ERROR,
                        "AmbientTempWatcher clear recorded data: charge current:2501 over "
                        "threshold."),
              1u);
}

TEST_F(AmbientTempWatcherTest, clearsWhenThePowerChanges) {
    start();
    fill(25000);
    rounds(6, 25000, 500);
    rounds(6, 25000, 0);
    EXPECT_TRUE(isFull()) << "500 up and 500 down";
    rounds(6, 25000, 501);
    EXPECT_FALSE(isFull());
    rounds(6, 25000, 501);
    rounds(6, 25000, 0);
    EXPECT_FALSE(isFull());
    EXPECT_EQ(log.count(ANDROID_LOG_ERROR, kPowerDiff), 2u);
}

TEST_F(AmbientTempWatcherTest, makesNoEstimateOfAChangingTemperatureButChecksTheStatus) {
    start();
    rounds(7, 20000);
    rounds(6, 21200);
    EXPECT_TRUE(log.has("AmbientTempWatcher slope:40.000000 continue batterytemp:21200 power:0"));
    EXPECT_EQ(ambient(), kNone) << "six slopes of 40";
    EXPECT_TRUE(log.has("AmbientTempWatcher currentTemp:-2147483648, lastTemp:-2147483648"));
    EXPECT_EQ(takeAnnounced(), Calls{});
    round(21200);
    EXPECT_EQ(ambient(), kNone) << "one steady round is not enough";
    round(21200);
    EXPECT_EQ(ambient(), 21);
}

TEST_F(AmbientTempWatcherTest, takesNoSamplesOfAnOldProjectThatCharges) {
    start();
    fill(25000);
    phone().perform(sim::Health{.usb = true});
    round(25000);
    EXPECT_FALSE(isFull());
    EXPECT_TRUE(log.has(kCharge));
    EXPECT_TRUE(log.has(kNotReady));
}

TEST_F(AmbientTempWatcherTest, takesNoSamplesOfANewProjectThatChargesWirelessly) {
    start(true);
    fill(25000);
    phone().perform(sim::Health{.usb = true});
    EXPECT_EQ(log.count(ANDROID_LOG_DEBUG, kSwitched), 1u) << "to the charging set";
    rounds(12, 25000);
    EXPECT_TRUE(isFull());
    phone().perform(sim::Health{.usb = true, .wireless = true});
    round(25000);
    EXPECT_FALSE(isFull());
    EXPECT_TRUE(log.has(kCharge));
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
    std::string params = kParams;
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
    phone().perform(sim::ServiceState{"charger", false});
    round(25000);
    EXPECT_TRUE(log.has("ChargerProxyService just died"));
    EXPECT_TRUE(log.has("unable to get Charger service"));
}

namespace {

struct BadParams {
    const char* name;
    std::string fitting;  // after "ambient_fitting":
    bool hasText;         // of the parameters themselves
};

class BadParamsTest : public AmbientTempWatcherTest,
                      public testing::WithParamInterface<BadParams> {};

std::string with(
        const std::string& names, const std::string& values,
        const std::string& thresholds = ",'temp_rate_threshold':40,'power_diff_threshold':500") {
    return "{'paramter_name':[" + names + "],'coefficient':[" + values + "]" + thresholds + "}";
}

const std::string kNames = "'temp_coeff','tempSlope_coeff','power_coeff','const_coeff'";

}  // namespace

TEST_P(BadParamsTest, giveNoEstimate) {
    setScenes(scene("default", 0, "skin") + ",'ambient':{'ambient_fitting':" + GetParam().fitting +
              "}");
    startPhone();
    rounds(14, 25000);
    EXPECT_EQ(log.count(ANDROID_LOG_ERROR, "parse ambient fitting parameters failed: ambient"),
              GetParam().hasText ? 1u : 0u);
    EXPECT_EQ(log.count(ANDROID_LOG_ERROR, "get ambient fitting param failed."), 1u);
    EXPECT_EQ(log.count(ANDROID_LOG_ERROR, kNotReady), 14u);
    takeEvents();
    phone().perform(sim::Transact{
            .code = kelvo::GET_AMBIENT_TEMP, .args = {}, .reply = {{sim::ReplyType::Int32}}});
    EXPECT_EQ(takeEvents(), (std::vector<std::string>{"{'event':'reply','code':25,'status':0,"
                                                      "'values':[-2147483648]}"}));
}

INSTANTIATE_TEST_SUITE_P(
        AmbientTempWatcherTest, BadParamsTest,
        testing::Values(BadParams{"null", "null", true}, BadParams{"text", "'temp_coeff'", true},
                        BadParams{"array", "[1,2]", true}, BadParams{"empty", "{}", true},
                        BadParams{"textForNames",
                                  "{'paramter_name':'temp_coeff','coefficient':[1]}", true},
                        BadParams{"rightSpelling",
                                  "{'parameter_name':['temp_coeff'],'coefficient':[1]}", true},
                        BadParams{"unequal", with(kNames, "1,2,3"), false},
                        BadParams{"textAmongNumbers", with(kNames, "1,2,3,'4'"), false},
                        BadParams{"numberAmongNames", with("1,2,3,4", "1,2,3,4"), false},
                        BadParams{"nameMissing", with("'temp_coeff'", "1"), false},
                        BadParams{"noThresholds", with(kNames, "1,2,3,4", ""), false},
                        BadParams{"oneThreshold",
                                  with(kNames, "1,2,3,4", ",'temp_rate_threshold':40"), false},
                        BadParams{"textForThreshold",
                                  with(kNames, "1,2,3,4",
                                       ",'temp_rate_threshold':'40','power_diff_threshold':5"),
                                  false}),
        [](const auto& test) { return test.param.name; });

TEST_F(AmbientTempWatcherTest, namesTheSceneOfANewProjectThatFails) {
    const std::string models = "'temp_model':{" + model("m", 7, "skin") + "}";
    setScenes(scene("default", 0, "skin") + ",'ambient':{" + models + "," + kParams +
              "},'ambient_charge':{" + models + "}");
    startPhone();
    round(25000);
    EXPECT_TRUE(log.has("parse ambient fitting parameters failed: ambient_charge"));
    EXPECT_TRUE(log.has("parse ambient_charge fitting param failed."));
    EXPECT_TRUE(log.has(kNotReady));
}
