#include "ProtocolTest.h"

#include <binder/IServiceManager.h>

#include <atomic>
#include <future>

namespace android {
namespace {

using DeathTest = ProtocolTest;

struct Mourner : IBinder::DeathRecipient {
    void binderDied(const wp<IBinder>&) override { ++notices; }
    std::atomic<int> notices = 0;
};

TEST_F(DeathTest, isToldOnceForEachLinkAndEndsCalls) {
    const sp<Mourner> once = new Mourner;
    const sp<Mourner> twice = new Mourner;
    const sp<Mourner> unlinked = new Mourner;
    const sp<Mourner> late = new Mourner;
    const sp<IBinder> other = swapBinder(mServer, kNewObject);
    EXPECT_EQ(OK, mServer->linkToDeath(once));
    for (void* cookie : {static_cast<void*>(this), static_cast<void*>(&mWorld)}) {
        EXPECT_EQ(OK, mServer->linkToDeath(twice, cookie));
    }
    EXPECT_EQ(OK, mServer->linkToDeath(unlinked));
    EXPECT_EQ(OK, mServer->unlinkToDeath(unlinked));
    EXPECT_EQ(NAME_NOT_FOUND, mServer->unlinkToDeath(unlinked));
    auto call = std::async(std::launch::async, [&] { return ask(mServer, kBlock).status; });
    EXPECT_EQ("blocked 1", mServerProcess.receive());
    mServerProcess.kill();
    EXPECT_EQ(DEAD_OBJECT, call.get());
    EXPECT_TRUE(eventually([&] { return once->notices == 1 && twice->notices == 2; }));
    EXPECT_EQ(DEAD_OBJECT, mServer->linkToDeath(late));
    EXPECT_EQ(DEAD_OBJECT, mServer->unlinkToDeath(once));
    // The driver did not yet have to say that this one is dead.
    EXPECT_EQ(OK, other->linkToDeath(late));
    EXPECT_TRUE(eventually([&] { return late->notices == 1; }));
    for (const sp<IBinder>& dead : {mServer, other}) {
        EXPECT_EQ(DEAD_OBJECT, ask(dead, kAdd, {1, 2}).status);
        EXPECT_EQ(DEAD_OBJECT, ask(dead, kAdd, {1, 2}, IBinder::FLAG_ONEWAY).status);
        EXPECT_EQ(DEAD_OBJECT, dead->pingBinder());
        EXPECT_FALSE(dead->isBinderAlive());
    }
    EXPECT_EQ(1, once->notices);
    EXPECT_EQ(2, twice->notices);
    EXPECT_EQ(0, unlinked->notices);
}

TEST_F(DeathTest, takesTheNameAway) {
    const sp<IServiceManager> manager = defaultServiceManager();
    const String16 name("server");
    EXPECT_EQ(mServer, manager->getService(name));
    mServerProcess.kill();
    EXPECT_TRUE(eventually([&] { return manager->checkService(name) == nullptr; }));
    auto waiter = std::async(std::launch::async, [&] { return manager->waitForService(name); });
    startServer("server");
    const sp<IBinder> found = waiter.get();
    ASSERT_NE(nullptr, found);
    EXPECT_NE(mServer, found);
    EXPECT_EQ(5, ask(found, kAdd, {2, 3}).value);
}

}  // namespace
}  // namespace android
