#include "service/BinderManager.h"

#include <binder/Parcel.h>
#include <binder/Status.h>

#include "support/EngineTest.h"

namespace {

using android::binder::Status;

/** Notes the code and the words of a call, after the token. */
struct RawListener : android::BBinder {
    android::status_t onTransact(uint32_t code, const android::Parcel& data, android::Parcel* reply,
                                 uint32_t) override {
        const android::String16 token("com.zenta.thermalcontrol.IThermalStatusListener");
        heard = data.enforceInterface(token) ? std::to_string(code) : "no token";
        while (data.dataAvail() > 0) {
            heard += " " + std::to_string(data.readInt32());
        }
        Status::fromExceptionCode(exception).writeToParcel(reply);
        return status;
    }
    android::status_t linkToDeath(const android::sp<DeathRecipient>&, void*, uint32_t) override {
        return status;
    }
    std::string heard;
    int32_t exception = Status::EX_NONE;
    android::status_t status = android::OK;
};

struct BinderManagerTest : EngineTest {
    BinderManagerTest() {
        startWithoutTemp();
        takeCalls();
    }
    static kelvo::BinderManager& manager() { return kelvo::BinderManager::getInstance(); }
};

}  // namespace

TEST_F(BinderManagerTest, callsByNumberAndTakesNoKindAgainThatFailed) {
    const std::string kFailed = ": ret(-32)";
    const std::string kCaught = " caught exception -3\n";
    const std::string kSays = "Kelvo service notify";
    // how, the call's code and words, the daemon's name for it, and what it says of its failures
    const std::tuple<std::function<void(kelvo::BinderClient&)>, std::string, std::string,
                     std::string, std::string>
            kinds[] = {
                    {[](auto& client) { client.notifyCallback(7); }, "3 7", "notifyCallback",
                     kSays + " thermal status" + kFailed, ""},
                    {[](auto& client) { client.notifyBroadCast(7, 8); }, "4 7 8", "notifyBroadCast",
                     kSays + " thermal broadcast" + kFailed, kSays + " broadcast" + kCaught},
                    {[](auto& client) { client.notifyAmbientTemp(7); }, "5 7", "notifyAmbientTemp",
                     "notify ambient" + kFailed + " 5", kSays + " ambient" + kCaught},
                    {[](auto& client) { client.notifyComponentHeat(7, 8, "x"); }, "6 7 8 1 120",
                     "notifyComponentHeat", kSays + "ComponentHeat" + kFailed,
                     kSays + "ComponentHeat" + kCaught},
            };
    const android::sp<RawListener> listener = new RawListener();
    const android::sp<kelvo::BinderClient> failing = new kelvo::BinderClient(1, listener);
    const android::sp<kelvo::BinderClient> complaining = new kelvo::BinderClient(2, listener);
    for (const auto& [notify, heard, name, failure, exception] : kinds) {
        log.clear();
        const auto isHeard = [&, &notify = notify](kelvo::BinderClient& client) {
            listener->heard.clear();
            notify(client);
            return !listener->heard.empty();
        };
        EXPECT_TRUE(isHeard(*failing));
        EXPECT_EQ(listener->heard, heard);
        EXPECT_EQ(log.count(name + " result=0"), 1u);
        listener->exception = Status::EX_ILLEGAL_ARGUMENT;
        EXPECT_TRUE(isHeard(*complaining));
        EXPECT_EQ(isHeard(*complaining), exception.empty()) << "what answers a status is not read";
        EXPECT_EQ(log.errors(exception), exception.empty() ? 0u : 1u);
        listener->exception = Status::EX_NONE;
        listener->status = android::DEAD_OBJECT;
        EXPECT_TRUE(isHeard(*failing));
        EXPECT_EQ(log.errors(failure), 1u);
        listener->status = android::OK;
        EXPECT_FALSE(isHeard(*failing)) << heard << ": failed once";
        EXPECT_EQ(log.count(name + " result=-1"), exception.empty() ? 2u : 4u);
    }
}

TEST_F(BinderManagerTest, saysWhoIsToldAndWhoIsGone) {
    phone().perform(sim::Listen{"a", 10050});
    EXPECT_EQ(log.count(ANDROID_LOG_INFO, "Register notifier successfully."), 1u);
    manager().notifyAmbientTemp(25);
    EXPECT_EQ(log.errors("Entering notifyAmbientTemp, binder clients size 1"), 1u);
    phone().perform(sim::ListenerDies{"a"});
    EXPECT_TRUE(log.has("BinderClient: binder(uid:10050) died!"));
    const android::sp<RawListener> dead = new RawListener();
    dead->status = android::DEAD_OBJECT;
    EXPECT_EQ(manager().registerClient(10052, dead), 0);
    EXPECT_TRUE(log.has("BinderClient: binder(uid:10052) died!")) << "before it could be linked to";
    phone().perform(sim::Transact{2, {sim::ListenerArgument{"b"}}, {}, 10051});
    EXPECT_TRUE(log.has("unable to find binder client record for uid:10051"));
    manager().notifyAmbientTemp(25);
    EXPECT_EQ(log.errors("Entering notifyAmbientTemp, binder clients size 0"), 1u);
}

TEST_F(BinderManagerTest, takesOnlySoMany) {
    std::vector<android::sp<android::IBinder>> listeners;
    const auto add = [&](int uid, size_t count) {
        int last = 0;
        for (size_t i = 0; i < count; ++i) {
            listeners.push_back(new android::BBinder());
            last = manager().registerClient(uid, listeners.back());
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
    EXPECT_EQ(manager().unRegisterClient(0, listeners.front()), 0)
            << "counted for who registered it";
    EXPECT_EQ(add(kApp, 1), 0);
    EXPECT_EQ(add(kApp, 1), -1) << "one place for one that has gone";
    EXPECT_EQ(add(1000, kelvo::BinderManager::kMostListeners - 257), 0);
    EXPECT_EQ(add(1000, 1), -1);
    EXPECT_EQ(add(0, 1), -1);
}
