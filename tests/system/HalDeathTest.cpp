// The daemon while the HALs' processes are killed and restarted.

#include <atomic>
#include <thread>

#include "Hal.h"
#include "KelvodTest.h"
#include "support/Json.h"

namespace {

using namespace kelvo;

constexpr int kDeaths = 100;
constexpr int kWarmUp = 10;  // deaths after which all threads have started
constexpr int kMostThreads =
        14;  // main, work, st-fitting, HIDL's, a caller for each HAL, pool of 8

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

struct HalDeathTest : KelvodTest, testing::WithParamInterface<std::string> {
    /** Tells the screen status until the charger has heard it. */
    static bool tellScreen(Hal& charger, int32_t status) {
        return await([&] {
            callKelvod(SET_SCREEN_STATUS, {status});
            charger.look();
            return charger.lastStatus() == status;
        });
    }
};

}  // namespace

TEST_P(HalDeathTest, reconnectsEachTimeAndLosesNoThreadAndNoHandle) {
    setConfig(30, "," + ambientScene("skin"));  // each cycle asks both HALs
    mTree.setNode("/vendor/etc/vintf/declared", sim::serviceKind(GetParam()).declared);
    Hal health(GetParam(), mTree.root());
    Hal charger("charger", mTree.root());
    startKelvod();
    ASSERT_TRUE(health.awaitClient());
    ASSERT_TRUE(tellScreen(charger, 1));
    std::atomic<bool> stop = false;
    std::thread load([&] {
        for (int i = 0; !stop; ++i) {
            callKelvod(GET_AMBIENT_TEMP);
            callKelvod(GET_ALL_SHELL_TEMPS);
            callKelvod(SET_CURRENT_PACKAGE, {"package" + std::to_string(i % 2)});
        }
    });
    Holdings warm;
    for (int death = 0; death < kDeaths && !HasFailure(); ++death) {
        health.killAndStart();
        charger.killAndStart();
        EXPECT_TRUE(health.awaitClient()) << death;
        EXPECT_TRUE(tellScreen(charger, death)) << death;
        EXPECT_TRUE(isAlive()) << death;
        warm = death == kWarmUp ? holdingsOf(pid()) : warm;
    }
    stop = true;
    load.join();
    const Holdings end = holdingsOf(pid());
    EXPECT_EQ(health.clients(), 1);
    // Each thread of the binder pool has a connection, and more may have been spawned since.
    EXPECT_LE(end.descriptors, warm.descriptors + kMostThreads - warm.threads);
    EXPECT_LE(end.handles, warm.handles + 1) << "the load's process has one more or less";
    EXPECT_LE(end.threads, kMostThreads);
}

INSTANTIATE_TEST_SUITE_P(Hals, HalDeathTest, testing::Values("health", "health-hidl"));
