// The daemon while the HALs' processes are killed and restarted.

#include <gtest/gtest.h>
#include <stdlib.h>

#include <atomic>
#include <thread>

#include "Hal.h"
#include "service/ServiceCodes.h"
#include "sim/framework/FrameworkClient.h"
#include "sim/tree/PhoneTree.h"
#include "support/BinderWorld.h"
#include "support/Json.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kDeaths = 100;
constexpr int kWarmUp = 10;  // deaths after which all threads have started
constexpr int kMostThreads =
        14;  // main, work, st-fitting, HIDL's, a caller for each HAL, pool of 8
constexpr std::chrono::seconds kLimit(30);

/** What a process holds of the system and of others. */
struct Holdings {
    int64_t descriptors = 0;
    int64_t threads = 0;
    int64_t handles = 0;  // to binders; 0 on the kernel's driver, which does not tell
};

Holdings holdingsOf(pid_t pid) {
    const std::string process = "/proc/" + std::to_string(pid);
    Holdings holdings{countEntries(process + "/fd"), countEntries(process + "/task"), 0};
    if (!BinderWorld::onKernel()) {
        for (const Json::Value& one : BinderWorld::hubState()["processes"]) {
            if (one["pid"].asInt() == pid) {
                holdings.handles = one["handles"].asInt64();
            }
        }
    }
    return holdings;
}

/** A framework that calls the daemon without a pause, from a thread of its own. */
class Load {
  public:
    Load() : mThread([this] { run(); }) {}
    ~Load() {
        mStop = true;
        mThread.join();
    }

  private:
    void run() {
        sim::FrameworkClient client([](const sim::Event&) {});
        for (int i = 0; !mStop; ++i) {
            const std::string package = "package" + std::to_string(i % 2);
            client.perform(sim::Transact{kelvo::GET_AMBIENT_TEMP, {}, {}});
            client.perform(sim::Transact{kelvo::GET_ALL_SHELL_TEMPS, {}, {}});
            client.perform(sim::Transact{kelvo::SET_CURRENT_PACKAGE, {package}, {}});
        }
    }

    std::atomic<bool> mStop = false;
    std::thread mThread;
};

struct HalDeathTest : testing::TestWithParam<std::string> {
    void buildPhone() {
        mScenario.zones = {{"skin", 30000}};
        // With an ambient model each cycle asks both HALs.
        mScenario.config.main =
                json("{'temp_threshold_down':[],'shell_temp_fitting_model':{" +
                     scene("default", 0, "skin") + "," + ambientScene("skin") + "}}");
        mScenario.properties["persist.sys.kelvo.enable"] = "1";
        sim::PhoneTree(mTree, mScenario).build();
        const char* const declared = sim::serviceKind(GetParam()).declared;
        mTree.setNode("/vendor/etc/vintf/declared", declared != nullptr ? declared : "");
    }
    /** Tells the screen status until the charger has heard it. */
    static bool tellScreen(Hal& charger, int32_t status) {
        sim::FrameworkClient client([](const sim::Event&) {});
        const Clock::time_point end = Clock::now() + kLimit;
        while (charger.lastStatus() != status && Clock::now() < end) {
            client.perform(sim::Transact{kelvo::SET_SCREEN_STATUS, {status}, {}});
            charger.look();
        }
        return charger.lastStatus() == status;
    }

    const std::string mRoot = getenv("KELVO_ROOT");
    sim::DeviceTree mTree{mRoot};
    sim::Scenario mScenario;
};

}  // namespace

TEST_P(HalDeathTest, reconnectsEachTimeAndLosesNoThreadAndNoHandle) {
    BinderWorld world;
    buildPhone();
    Hal health(GetParam(), mRoot);
    Hal charger("charger", mRoot);
    sim::PhoneProcess kelvod({programPath("kelvod")}, mRoot, mRoot + "/kelvod.log");
    ASSERT_TRUE(health.awaitClient());
    ASSERT_TRUE(tellScreen(charger, 1));
    std::optional<Load> load(std::in_place);
    Holdings warm;
    for (int death = 0; death < kDeaths; ++death) {
        health.killAndStart();
        charger.killAndStart();
        ASSERT_TRUE(health.awaitClient()) << death;
        ASSERT_TRUE(tellScreen(charger, death)) << death;
        ASSERT_FALSE(kelvod.ending()) << death;
        if (death == kWarmUp) {
            warm = holdingsOf(kelvod.pid());
        }
    }
    load.reset();
    const Holdings end = holdingsOf(kelvod.pid());
    EXPECT_EQ(health.clients(), 1);
    // Each thread of the binder pool has a connection, and more may have been spawned since.
    EXPECT_LE(end.descriptors, warm.descriptors + kMostThreads - warm.threads);
    EXPECT_LE(end.handles, warm.handles + 1) << "the load's process has one more or less";
    EXPECT_LE(end.threads, kMostThreads);
}

INSTANTIATE_TEST_SUITE_P(Hals, HalDeathTest, testing::Values("health", "health-hidl"));
