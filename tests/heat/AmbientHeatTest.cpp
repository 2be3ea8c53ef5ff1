#include "ambient/AmbientTempWatcher.h"
#include "heat/AmbientCompHeat.h"
#include "support/EngineTest.h"

namespace {

struct AmbientHeatTest : EngineTest {
    // Twelve more rounds fill the window; each estimate counts the device's °C as the air's.
    void start() {
        addZone("dead", std::nullopt);
        std::string steadyOrNot = kAmbientFitting;
        steadyOrNot.replace(steadyOrNot.find("40.0"), 4, "1000000.0");
        setScenes(scene("default", 0, "dead") + ",'ambient':{'temp_model':{" +
                  model("power", 0, "dead") + "}," + steadyOrNot + "}");
        startPhone();
    }
    /** `rounds` rounds at this temperature of the device, one each 5 s. */
    void rounds(int count, int temp) {
        for (int i = 0; i < count; ++i) {
            runUntil(static_cast<double>(phone().now()) / 1000 + 5);
            kelvo::AmbientTempWatcher::getInstance().updateAmbientTemp(temp, 0);
        }
    }
    AmbientCompHeat component;
};

}  // namespace

TEST_F(AmbientHeatTest, reportsHowTheAirChanged) {
    start();
    rounds(12, 25000);  // the first only begins
    component.processRawSample();
    EXPECT_EQ(component.getHeatContribution(), 0) << "no estimate, no sample";
    rounds(1, 25000);
    component.processRawSample();
    EXPECT_EQ(component.getHeatInfo()->heat, 0);
    // Each change takes 12 rounds for the window and 12 for an estimate of its own.
    rounds(24, 31000);
    component.processRawSample();
    EXPECT_EQ(component.getHeatInfo()->heat, 0) << "the newest is an extreme itself";
    rounds(24, 28000);
    component.processRawSample();
    EXPECT_EQ(component.getHeatInfo()->heat, -3000) << "cooler than the later extreme";
    EXPECT_EQ(component.getHeatInfo()->heat, -3000) << "a report is no query";
    EXPECT_EQ(component.getHeatInfo()->keyFactor,
              (std::map<std::string, int>{{"ambientTemp", 28}, {"ischarge", 0}}));
    EXPECT_EQ(component.getHeatContribution(), -3000);
    EXPECT_EQ(component.getHeatContribution(), 0) << "since the previous query";
    runUntil(static_cast<double>(phone().now()) / 1000 + 301);
    EXPECT_EQ(component.getHeatContribution(), 0) << "too long ago";
    phone().perform(sim::Health{.ac = false, .usb = true, .wireless = false});
    EXPECT_EQ(component.getHeatInfo()->keyFactor["ischarge"], 1);
}
