#include "service/BinderManager.h"

#include "core/MessageManager.h"
#include "sim/virtual/VirtualScheduler.h"
#include "support/EngineTest.h"

namespace {

using Calls = std::vector<std::string>;

class BinderManagerTest : public EngineTest {
  protected:
    BinderManagerTest() {
        addZone("skin", 40000);
        setScenes(scene("default", 0, "skin"));
        startPhone();
        runUntil(0);
    }
    Calls perform(const sim::Deed& deed) {
        phone().perform(deed);
        return takeCalls();
    }
    Calls callsOf(void (kelvo::BinderManager::*notify)(int, int)) {
        (kelvo::BinderManager::getInstance().*notify)(3, 41000);
        return takeCalls();
    }
    Calls statusCalls() {
        kelvo::BinderManager::getInstance().notifyCallback(3);
        return takeCalls();
    }
};

}  // namespace

TEST_F(BinderManagerTest, bringsANewListenerUpToDate) {
    EXPECT_EQ(perform(sim::Listen{"a", 10050}), (Calls{"status -1", "broadcast -1 40000"}));
    EXPECT_EQ(perform(sim::Transact{1, {sim::ListenerArgument{"a"}}, {}, 10051}), Calls{});
    EXPECT_TRUE(log.has("binder client(uid: 10051) already added")) << "the uid is not the key";
    EXPECT_EQ(perform(sim::Listen{"b", 10050}).size(), 2u);
    EXPECT_EQ(statusCalls().size(), 2u);
    perform(sim::Unlisten{"a"});
    EXPECT_EQ(statusCalls().size(), 1u);
    perform(sim::Unlisten{"a"});
    EXPECT_TRUE(log.has("unable to find binder client record for uid:10050"));
}

TEST_F(BinderManagerTest, neverRepeatsAKindThatFailed) {
    perform(sim::Listen{"a", 10050});
    perform(sim::ListenerFails{"a", 4, 1});
    EXPECT_EQ(callsOf(&kelvo::BinderManager::notifyBroadCast), Calls{"broadcast 3 41000"});
    EXPECT_TRUE(log.has("notifyBroadCast result=-1"));
    EXPECT_EQ(callsOf(&kelvo::BinderManager::notifyBroadCast), Calls{});
    EXPECT_EQ(statusCalls(), Calls{"status 3"}) << "the other kinds go on";
    kelvo::BinderManager::getInstance().notifyAmbientTemp(25);
    EXPECT_EQ(takeCalls(), Calls{"thermal 25"});
}

TEST_F(BinderManagerTest, dropsTheDeadThroughTheLoop) {
    perform(sim::Listen{"a", 10050});
    perform(sim::Listen{"b", 10051});
    perform(sim::ListenerDies{"a"});
    EXPECT_TRUE(log.has("BinderClient: binder(uid:10050) died!"));
    EXPECT_EQ(statusCalls().size(), 1u);
    EXPECT_TRUE(log.has("Entering notifyCallback, binder clients size 1"));
    EXPECT_EQ(perform(sim::Listen{"a", 10050}).size(), 2u) << "comes back as a new binder";
}

TEST_F(BinderManagerTest, takesOnlySoMany) {
    auto& manager = kelvo::BinderManager::getInstance();
    std::vector<android::sp<android::IBinder>> listeners;
    const auto add = [&](int uid, size_t count) {
        int last = 0;
        for (size_t i = 0; i < count; ++i) {
            listeners.push_back(new android::BBinder());
            last = manager.registerClient(uid, listeners.back());
        }
        return last;
    };
    constexpr int kApp = 10050;
    EXPECT_EQ(add(kApp, kelvo::BinderManager::kMostOfUid), 0);
    EXPECT_EQ(add(kApp, 1), -1);
    EXPECT_TRUE(
            log.has("binder client(uid: 10050) refused, there are 256 of this uid and 256 in "
                    "all"));
    EXPECT_EQ(add(kApp + 1, 1), 0) << "others are not concerned";
    EXPECT_EQ(manager.unRegisterClient(0, listeners.front()), 0) << "counted for who registered it";
    EXPECT_EQ(add(kApp, 1), 0);
    EXPECT_EQ(add(1000, kelvo::BinderManager::kMostListeners - 257), 0);
    EXPECT_EQ(add(1000, 1), -1);
    EXPECT_EQ(add(0, 1), -1);
}

TEST_F(BinderManagerTest, tellsNobodyOfHeatWithoutAText) {
    perform(sim::Listen{"a", 10050});
    EXPECT_EQ(callsOf(&kelvo::BinderManager::notifyHeatSource), Calls{});
}
