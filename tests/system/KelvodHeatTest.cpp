// The daemon's heat monitoring with real processes and threads.

#include <algorithm>
#include <array>
#include <atomic>
#include <thread>

#include "Hal.h"
#include "KelvodTest.h"

namespace {

using namespace kelvo;

constexpr char kMade[] = "heatpc readSamples loop thread...";
constexpr char kSampled[] = "cpuComp processRawSample energy=";

using KelvodHeatTest = KelvodTest;

}  // namespace

TEST_F(KelvodHeatTest, isAskedByEightSwitchedAndSampledWhileHalsAreKilled) {
    constexpr int kDeaths = 2;  // about 10 s each: the second pass samples the processor
    setConfig(30, kHeatSources);
    mTree.setProperty("persist.sys.shelltemp.interval", "1");
    startKelvod();
    std::atomic<bool> stop = false;
    std::vector<std::thread> callers;
    const auto keepCalling = [&](std::vector<std::pair<uint32_t, client::Argument>> calls) {
        callers.emplace_back([&stop, calls] {
            while (!stop) {
                for (const auto& [code, argument] : calls) {
                    callKelvod(code, {argument});
                }
            }
        });
    };
    const std::string traffic = "transmit:1,receive:1,mobileTx:1,mobileRx:1";
    for (const int32_t query : {3, 3, 4, 4, 7, 7}) {
        keepCalling({{COMPONENT_HEAT_TEST, query}, {GET_COMPONENTS_HEAT_DETAIL, 0}});
    }
    keepCalling({{SET_NETWORK_SPEED_INFO, traffic}, {SET_NETWORK_INFO, traffic}});
    keepCalling({{SET_WIFI_INFO, traffic}, {GET_BIG_DATA, 0}});
    // Each stop wakes the sampling thread.
    const auto switchOften = [] {
        for (int i = 0; i < 50; ++i) {
            callKelvod(COMPONENT_HEAT_TEST, {kStopHeat});
            callKelvod(COMPONENT_HEAT_TEST, {kStartHeat});
        }
    };
    std::array<Hal, 3> hals{Hal{"performance", mTree.root()}, Hal{"panel", mTree.root()},
                            Hal{"frames", mTree.root()}};
    for (int death = 1; death <= kDeaths; ++death) {
        for (Hal& hal : hals) {
            hal.killAndStart();
        }
        std::thread other(switchOften);
        switchOften();
        other.join();
        hals[0].answer(sim::TaskStats{"1\t1\t" + std::to_string(5000 * death) + "\tx\n"});
        EXPECT_TRUE(logs(kSampled + std::to_string(death) + "\n")) << "of the new HAL";
        ASSERT_TRUE(isAlive()) << death;
    }
    stop = true;
    for (std::thread& caller : callers) {
        caller.join();
    }
    EXPECT_TRUE(isAlive());
    EXPECT_EQ(countInLog(kMade), 1u);
    EXPECT_EQ(std::ranges::count(threadNames(pid()), "comp-monitor"), 1);
}
