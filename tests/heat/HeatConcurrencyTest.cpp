// The center with its own thread and callers on several others; the thread sanitizer watches.

#include <aidl/vendor/zenta/hardware/performance/BnPerformance.h>
#include <android/binder_manager.h>
#include <binder_linux/LocalServiceManager.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include <chrono>
#include <latch>
#include <thread>

#include "core/Connections.h"
#include "heat/CellularCompHeat.h"
#include "heat/CpuCompHeat.h"
#include "heat/HeatProcessCenter.h"
#include "heat/WifiCompHeat.h"
#include "sim/services/PhoneServices.h"
#include "sim/tree/PhoneTree.h"
#include "support/Json.h"
#include "support/LogCapture.h"

namespace {

constexpr char kThreadLine[] = "heatpc readSamples loop thread...";
constexpr std::chrono::seconds kStartLimit(10);
constexpr int kRounds = 100;

/** A performance service that answers when it is let. */
class HangingService : public aidl::vendor::zenta::hardware::performance::BnPerformance {
  public:
    ndk::ScopedAStatus readCpuTaskstats(std::string* out) override {
        mCalled.count_down();
        mReleased.wait();
        *out = "1\t1\t5000000\tx\n";
        return ndk::ScopedAStatus::ok();
    }
    void waitForCall() { mCalled.wait(); }
    void release() { mReleased.count_down(); }

  private:
    std::latch mCalled{1};
    std::latch mReleased{1};
};

sim::Scenario phone() {
    sim::Scenario scenario;
    scenario.nodes = {{"/sys/class/kgsl/kgsl-3d0/devfreq/gpu_load", "50"},
                      {"/sys/class/kgsl/kgsl-3d0/gpuclk", "450000000"}};
    scenario.config.main =
            json("{'thermal_status_model':{'temp_threshold_down':[]},"
                 "'shell_temp_fitting_model':{'heatsource_detection':{'heatsource_model':"
                 "{'device_name':['cpu','gpu'],'coefficient':[1,1]},'gpu_model':"
                 "{'gpufreq':[300,600],'powermA':[100,250]}}}}");
    return scenario;
}

}  // namespace

TEST(HeatConcurrencyTest, samplesWhileItIsAskedStartedAndStopped) {
    kelvo::connectEngines();
    const LogCapture log;
    const sim::Scenario scenario = phone();
    sim::DeviceTree tree(getenv("KELVO_ROOT"));
    sim::PhoneTree(tree, scenario).build();
    android::installLocalServiceManager();
    sim::PhoneServices services(scenario, sim::PhoneServices::launchHere, [](sim::Event) {});
    services.perform(sim::TaskStats{"1\t1\t5000000\tx\n"});
    services.start();
    HeatProcessCenter& center = *HeatProcessCenter::getInstance();

    const auto repeat = [](auto call) {
        return std::thread([call] {
            for (int i = 0; i < kRounds; ++i) {
                call(i);
            }
        });
    };
    // Each stop wakes the sampling thread, so that it makes passes all the time.
    const auto switchMonitor = [&](int) {
        center.startMonitor();
        center.stopMonitor();
    };
    std::thread callers[] = {
            repeat(switchMonitor),
            repeat(switchMonitor),
            repeat([&](int) { center.getMainHeatCompent(); }),
            repeat([&](int) { center.getCompentsHeat(); }),
            repeat([&](int) { center.getCompentsHeatDetailInfo(); }),
            repeat([&](int) { center.getCompentsHeatDetailInfo(); }),
            repeat([&](int i) { center.collectBigData(std::to_string(i)); }),
            repeat([&](int) {
                std::string text = "transmit:1,receive:1,mobileTx:1,mobileRx:1";
                WifiCompHeat::getInstance().processWifiSpeed(text);
                CellularCompHeat::getInstance().processCellularSpeed(text);
            }),
    };
    for (int i = 0; i < kRounds; ++i) {
        services.perform(sim::ServiceState{"performance", i % 2 != 0});
        services.perform(sim::ServiceState{"quorix", i % 8 != 0});
        services.perform(sim::Usage{{{0, 3600, i}}, {}, {}, {{0, 3600, 1000 * (i % 2)}}});
    }
    for (std::thread& caller : callers) {
        caller.join();
    }
    center.startMonitor();
    const auto limit = std::chrono::steady_clock::now() + kStartLimit;
    while (!log.has(kThreadLine) && std::chrono::steady_clock::now() < limit) {
        std::this_thread::yield();
    }
    EXPECT_NE(center.getCompentsHeatDetailInfo(), "");
    EXPECT_TRUE(center.stopMonitor());
    EXPECT_EQ(log.count(kThreadLine), 1U) << "one thread for all of it";
}

TEST(HeatConcurrencyTest, aHangingServiceHoldsUpNobodyButTheSampler) {
    android::installLocalServiceManager();
    const auto service = ndk::SharedRefBase::make<HangingService>();
    const std::string name = std::string(HangingService::descriptor) + "/default";
    ASSERT_EQ(AServiceManager_addService(service->asBinder().get(), name.c_str()), EX_NONE);
    CpuCompHeat cpu;
    cpu.processRawSample();  // arms
    std::thread sampler([&cpu] { cpu.processRawSample(); });
    service->waitForCall();
    EXPECT_EQ(cpu.getHeatContribution(), -1);
    EXPECT_EQ(cpu.getHeatInfo()->heat, -1);
    cpu.collectBigData(true);
    cpu.clearSamples();
    service->release();
    sampler.join();
}
