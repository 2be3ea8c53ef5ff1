// A service in another process, as a daemon uses it.

#include <android/binder_libbinder.h>
#include <android/binder_manager.h>
#include <android/binder_process.h>
#include <binder/Stability.h>
#include <gtest/gtest.h>

#include "Echo.h"
#include "support/BinderWorld.h"
#include "support/Phone.h"

namespace {

constexpr char kName[] = "ndktest.IEcho/default";
constexpr std::chrono::milliseconds kLimit(kBinderWorldLimitMs);

int serve(RoleLink& link) {
    ABinderProcess_startThreadPool();
    const auto echo = ndk::SharedRefBase::make<Echo>();
    link.send(AServiceManager_addService(echo->asBinder().get(), kName) == EX_NONE ? "ready"
                                                                                   : "refused");
    link.receive();
    return 0;
}
const Role kServe("ndkEcho", serve);

bool isOfTheWholePhone(const ndk::SpAIBinder& binder) {
    return android::internal::Stability::requiresVintfDeclaration(
            AIBinder_toPlatformBinder(binder.get()));
}

struct Mourning {
    int deaths = 0;
    std::promise<int> ended;  // the deaths, when the cookie was given back
};

TEST(EchoProcessTest, callsBackAndIsMournedOnce) {
    BinderWorld world;
    phone().setNode("/vendor/etc/vintf/declared", kName);
    RoleProcess& server = world.start("ndkEcho");
    ASSERT_EQ("ready", server.receive());
    ABinderProcess_startThreadPool();
    const ndk::SpAIBinder binder(AServiceManager_getService(kName));
    const auto echo = aidl::ndktest::IEcho::fromBinder(binder);
    ASSERT_NE(nullptr, echo);
    EXPECT_TRUE(echo->isRemote());
    EXPECT_TRUE(isOfTheWholePhone(binder));
    EXPECT_EQ(binder, ndk::SpAIBinder(AServiceManager_checkService(kName)));
    const ndk::SpAIBinder manager(AServiceManager_checkService("manager"));
    EXPECT_EQ(nullptr, aidl::ndktest::IEcho::fromBinder(manager)) << "it is another interface";

    const auto own = ndk::SharedRefBase::make<Echo>();
    EXPECT_TRUE(isOfTheWholePhone(own->asBinder()));
    const Echo::Status answer = echo->callBack(own);
    EXPECT_EQ(Echo::failure(1).getDescription(), answer.getDescription());
    EXPECT_EQ(gettid(), own->failedOn) << "on the thread that waits";
    auto noted = own->noted.get_future();
    ASSERT_EQ(std::future_status::ready, noted.wait_for(kLimit));
    EXPECT_EQ(getpid(), noted.get()) << "who called";
    EXPECT_FALSE(AIBinder_isHandlingTransaction());

    Mourning stays;
    Mourning leaves;
    const ndk::ScopedAIBinder_DeathRecipient recipient(AIBinder_DeathRecipient_new(
            [](void* cookie) { ++static_cast<Mourning*>(cookie)->deaths; }));
    AIBinder_DeathRecipient_setOnUnlinked(recipient.get(), [](void* cookie) {
        auto* mourning = static_cast<Mourning*>(cookie);
        mourning->ended.set_value(mourning->deaths);
    });
    ASSERT_EQ(STATUS_OK, AIBinder_linkToDeath(binder.get(), recipient.get(), &stays));
    ASSERT_EQ(STATUS_OK, AIBinder_linkToDeath(binder.get(), recipient.get(), &leaves));
    EXPECT_EQ(STATUS_OK, AIBinder_unlinkToDeath(binder.get(), recipient.get(), &leaves));
    EXPECT_EQ(0, leaves.ended.get_future().get());
    server.kill();
    auto ended = stays.ended.get_future();
    ASSERT_EQ(std::future_status::ready, ended.wait_for(kLimit));
    EXPECT_EQ(1, ended.get());
    EXPECT_EQ(STATUS_NAME_NOT_FOUND, AIBinder_unlinkToDeath(binder.get(), recipient.get(), &stays));
    EXPECT_FALSE(AIBinder_isAlive(binder.get()));
    EXPECT_EQ(STATUS_DEAD_OBJECT, echo->fail(0).getStatus());
    Mourning late;
    EXPECT_EQ(STATUS_DEAD_OBJECT, AIBinder_linkToDeath(binder.get(), recipient.get(), &late));
    EXPECT_EQ(0, late.ended.get_future().get());
}

}  // namespace
