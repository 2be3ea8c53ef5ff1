#include "heat/HeatProcessCenter.h"

#include <binder/Parcel.h>
#include <gmock/gmock.h>
#include <vendor/zenta/hardware/displaypanelfeature/1.0/IDisplayPanelFeature.h>

#include "HeatSourceTest.h"
#include "sim/services/PublishedBinder.h"

namespace {

using vendor::zenta::hardware::displaypanelfeature::V1_0::IDisplayPanelFeature;

HeatProcessCenter& center() {
    return *HeatProcessCenter::getInstance();
}

/** An engine that stops monitoring while it is told that it starts. */
class StoppingEngine : public android::BBinder {
  public:
    const android::String16& getInterfaceDescriptor() const override {
        static const android::String16 kDescriptor("com.zenta.pelko.IZentaQuorix");
        return kDescriptor;
    }
    std::vector<int32_t> told;

  protected:
    android::status_t onTransact(uint32_t code, const android::Parcel& data, android::Parcel* reply,
                                 uint32_t) override {
        if (code == kInform && data.checkInterface(this)) {
            told.push_back(data.readInt32());
            if (told.back() == kReport) {
                center().stopMonitor();
            }
        }
        reply->writeNoException();
        reply->writeInt32(0);
        return android::OK;
    }

  private:
    static constexpr uint32_t kInform = 22;
    static constexpr int32_t kReport = 1;
};

/** A panel that asks for the main heat source before it answers. */
class AskingPanel : public IDisplayPanelFeature {
  public:
    android::hardware::Return<void> getDisplayPanelFeatureValue(
            uint32_t, getDisplayPanelFeatureValue_cb callback) override {
        center().getMainHeatCompent();
        callback(0, {100});
        return {};
    }
};

/** "heatsource_model" (empty: none), whether it is valid, cpu's coefficient, the row logged last.
 */
using ModelCase = std::tuple<std::string, bool, float, std::string>;

class HeatModelTest : public EngineTest, public testing::WithParamInterface<ModelCase> {};

struct HeatCenterTest : HeatSourceTest {
    /** Powers (mW) for the passes to come, all but the processor's from the feed. */
    void heat(int cpu, int display, int cellular = 0, int wifi = 0) {
        phone().perform(sim::TaskStats{"1\t1\t" + std::to_string(cpu * 5000) + "\tx\n"});
        phone().perform(sim::Usage{{},
                                   {{0, 3600, wifi * 1000}},
                                   {{0, 3600, cellular * 1000}},
                                   {{0, 3600, display * 1000}}});
    }
};

}  // namespace

TEST_P(HeatModelTest, isUsableWholeOrNotAtAll) {
    const auto& [model, valid, cpu, lastRow] = GetParam();
    setScenes("'heatsource_detection':{" + model + "}");
    startPhone();
    EXPECT_EQ(center().isInvalid(), !valid);
    EXPECT_EQ(center().getCoeffs("cpu"), cpu);
    EXPECT_EQ(log.lastAfter("heatpc device_name:").value_or(""), lastRow);
    center().startMonitor();
    EXPECT_EQ(center().getCompentsHeatDetailInfo().empty(), !valid);
    EXPECT_EQ(center().stopMonitor(), valid);
    EXPECT_EQ(center().getMainHeatCompent().type, valid ? AMBIENT : -1);
}

INSTANTIATE_TEST_SUITE_P(
        Models, HeatModelTest,
        testing::Values(
                ModelCase{"'heatsource_model':{'device_name':['gpu','cpu'],'coefficient':[0.5,2]}",
                          true, 2, "cpu, coefficient:2.000000"},
                ModelCase{"'heatsource_model':{'device_name':['cpu','cpu'],'coefficient':[1,3]}",
                          true, 3, "cpu, coefficient:3.000000"},
                ModelCase{"", false, -1, ""},
                ModelCase{"'heatsource_model':{'device_name':['cpu','gpu'],'coefficient':[1,0]}",
                          false, -1, "gpu, coefficient:0.000000"}));

TEST_F(HeatCenterTest, namesTheMainSource) {
    start();
    monitor();
    EXPECT_EQ(center().getMainHeatCompent().type, AMBIENT) << "0 beats what is unknown (-1)";
    // cpu, display, type, hottest
    const std::tuple<int, int, int32_t, int32_t> rows[] = {
            {100, 99, CPU, 100}, {100, 101, DISPLAY, 101}, {100, 100, CPU, 100}};
    double time = 5;
    for (const auto& [cpu, display, type, hottest] : rows) {
        heat(cpu, display);
        runUntil(time += 25);
        center().getMainHeatCompent();  // still of the row before, in part
        runUntil(time += 25);
        const auto main = center().getMainHeatCompent();
        EXPECT_EQ(main.type, type) << cpu << " " << display;
        EXPECT_EQ(main.heat, hottest);
    }
}

TEST_F(HeatCenterTest, summarisesInOneLine) {
    scenario.nodes.push_back({"/sys/class/kgsl/kgsl-3d0/devfreq/gpu_load", "50"});
    scenario.nodes.push_back({"/sys/class/kgsl/kgsl-3d0/gpuclk", "450000000"});
    start("'gpu_model':{'gpufreq':[300,600],'powermA':[100,250]}");
    EXPECT_EQ(center().getCompentsHeat(), "");
    monitor();
    heat(700, 300, 40, 30);
    runUntil(25);
    EXPECT_EQ(center().getCompentsHeat(),
              "cpu:700,display:300,cellular:40,wifi:30,gpu:87,ambient:0,ambient:-2147483648,");
    center().stopMonitor();
    EXPECT_EQ(center().getCompentsHeat(), "");
    EXPECT_EQ(center().getCompentsHeatDetailInfo(), "");
}

// Both would wait for themselves if the center held a lock while it asks.
TEST_F(HeatCenterTest, holdsNoLockWhileItAsksOtherProcesses) {
    scenario.nodes.push_back({"/proc/chip/hw_code", "0\n"});
    scenario.services.erase("panel");
    scenario.services.erase("quorix");
    start();
    const sim::PublishedHidl panel(IDisplayPanelFeature::descriptor, new AskingPanel);
    heat(100, 300);
    monitor();
    runUntil(20);
    EXPECT_NE(reported("display").find("'Brightness':100"), std::string::npos);
    center().stopMonitor();

    const android::sp<StoppingEngine> engine = new StoppingEngine;
    const sim::PublishedBinder published("quorix", engine);
    center().startMonitor();
    EXPECT_THAT(engine->told, testing::ElementsAre(1, 2)) << "the latest wish comes last";
    EXPECT_FALSE(center().stopMonitor());
}

TEST_F(HeatCenterTest, keepsItsCadence) {
    start();
    monitor();
    runUntil(7);
    const auto passes = [this] { return log.errors("gpuComp processRawSample energy=0"); };
    EXPECT_EQ(passes(), 2U) << "at 0 and 5";
    center().stopMonitor();
    phone().perform(sim::SetProperties{});  // the loop takes its wake-up
    monitor();
    runUntil(11.9);
    EXPECT_EQ(passes(), 2U) << "the wake-up at 7 began the cadence anew";
    runUntil(12);
    EXPECT_EQ(passes(), 3U);
}

TEST_F(HeatCenterTest, servesTheTestTransactions) {
    start();
    for (const int32_t command : {1, 3, 4, 7, 5, 6, 8}) {
        call(102, command);
    }
    EXPECT_EQ(log.errors("heatpc getMainHeatCompent type: 5, value:0"), 1U);
    EXPECT_EQ(log.errors("heatpc getCompentsHeat cpu:-1,display:-1,cellular:-1,wifi:-1,gpu:-1,"
                         "ambient:0,"),
              1U);
    EXPECT_EQ(log.errors("heatpc getCompentsHeatDetailInfo:cpu:-1,display:-1,cellular:-1,wifi:-1,"
                         "gpu:-1,ambient:0,ambient:-2147483648,temp:0"),
              1U);
    call(102, 2);
    EXPECT_FALSE(center().stopMonitor());
}
