// What the fitting engine makes of the ambient models.

#include "ambient/AmbientTempWatcher.h"
#include "support/EngineTest.h"

namespace {

struct AmbientFittingTest : EngineTest {
    AmbientFittingTest() {
        addZone("skin", 31000);
        addZone("cpu", 42000);
        addZone("spare", 23000);
    }
    /** The shell's "default" is front over skin and core over cpu. */
    void start(const std::string& ambientModels, const std::string& more = "") {
        setScenes("'default':{'temp_model':{" + model("front", 0, "skin") + "," +
                  model("core", 1, "cpu") + "}},'ambient':{'temp_model':{" + ambientModels + "}," +
                  kAmbientFitting + "}" + more);
        startPhone();
        runUntil(5);
    }
    static std::string sample(int32_t temp, int32_t power) {
        return "AmbientTempWatcher updateSample temp:" + std::to_string(temp) +
               ", power:" + std::to_string(power) + ", batteryCurrent:0";
    }
};

std::string withAirOverSpare(const std::string& name) {
    return ",'" + name + "':{'temp_model':{" + model("air", 10, "spare") + "," +
           model("power", 11, "cpu") + "}," + kAmbientFitting + "}";
}

std::string switchedTo(const std::string& scene) {
    return "switch ambient fitting model to " + scene + " scene";
}

constexpr char kOfShell[] = "fittingAmbientTemp temp is configure of shell.";

}  // namespace

TEST_F(AmbientFittingTest, takesTheShellsOwnTemperatureForItsName) {
    start(model("power", 10, "cpu") + "," + model("front", 11, "spare"));
    EXPECT_TRUE(log.has(sample(31000, 42000)));
    EXPECT_TRUE(log.has(kOfShell));
}

TEST_F(AmbientFittingTest, takesTheModelsTemperatureWhenTheShellHasNone) {
    start(model("power", 10, "cpu") + "," + model("back", 11, "spare") + "," +
          model("front", 12, "skin") + "," + model("core", 13, "cpu"));
    EXPECT_TRUE(log.has(sample(23000, 42000))) << "the first temperature, which is back";
    EXPECT_TRUE(log.has("fittingAmbientTemp tempOfConf 23000"));
}

TEST_F(AmbientFittingTest, takesAnyOtherModelOnlyWithoutOneOfTheShell) {
    start(model("power", 10, "cpu") + "," + model("air", 11, "spare") + "," +
          model("core", 12, "skin"));
    EXPECT_TRUE(log.has(sample(23000, 42000)));
    EXPECT_FALSE(log.has(kOfShell));
}

TEST_F(AmbientFittingTest, needsBothPowerAndTemperature) {
    const std::string unknown =
            "'front':{'index':11,'type':2,'thermal_zone':['skin'],'coefficient':[1]}";
    start(model("power", 10, "cpu") + "," + unknown);
    EXPECT_EQ(log.count("fitting model (2) has not supported!"), 2u) << "and the round goes on";
    EXPECT_FALSE(log.has(sample(31000, 42000)));
}

TEST_F(AmbientFittingTest, endsTheRoundAtAZoneThatCannotBeRead) {
    start(model("air", 10, "spare") + "," + model("power", 11, "cpu"));
    ASSERT_TRUE(log.has(sample(23000, 42000)));
    setTemp(2, std::nullopt);
    log.clear();
    runUntil(10);
    EXPECT_TRUE(log.has("Get temp(tz:2) failed in fittingAmbientTemp!"));
    EXPECT_FALSE(log.has(sample(23000, 42000)));
    setTemp(0, 32000);
    takeWrites();
    runUntil(15);
    EXPECT_EQ(takeWrites(), std::vector<std::string>{"0 32000"}) << "the shell is fitted all along";
}

TEST_F(AmbientFittingTest, followsChargingAndFolding) {
    start(model("air", 10, "spare") + "," + model("power", 11, "cpu"),
          withAirOverSpare("ambient_charge") + withAirOverSpare("ambient_fold"));
    EXPECT_TRUE(log.has(sample(23000, 42000)));
    phone().perform(sim::Health{.ac = true});
    EXPECT_TRUE(log.has("switch charge state"));
    EXPECT_EQ(log.count(switchedTo("ambient_charge")), 1u);
    const auto fold = [this](int32_t status) { call(24, status); };
    log.clear();
    fold(0);
    EXPECT_FALSE(log.has("AmbientTempWatcher clear recorded data: status changed."))
            << "ambient_fold_charge is missing";
    phone().perform(sim::Health{});
    EXPECT_EQ(log.count(switchedTo("ambient_fold")), 1u);
    fold(1);
    EXPECT_EQ(log.count(switchedTo("ambient")), 1u);
}

TEST_F(AmbientFittingTest, startsWithTheChargingSetWhenItCharges) {
    std::string tenMore = kAmbientFitting;
    tenMore.replace(tenMore.find("0,0,0]"), 6, "0,0,10]");
    setScenes(scene("default", 0, "skin") + withAirOverSpare("ambient") +
              ",'ambient_charge':{'temp_model':{" + model("air", 10, "skin") + "," +
              model("power", 11, "cpu") + "}," + tenMore + "}");
    scenario.healthHal = sim::HealthHal::Hidl;  // tells its state to whoever connects
    buildPhone();
    phone().perform(sim::Health{.usb = true});
    ASSERT_TRUE(phone().start());
    runUntil(60);
    EXPECT_TRUE(log.has(sample(31000, 42000)));
    EXPECT_EQ(kelvo::AmbientTempWatcher::getInstance().getAmbientTemp(), 41);
}
