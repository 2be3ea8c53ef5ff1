#include "service/ListenerCalls.h"

#include <binder/Parcel.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>

#include "service/BinderClient.h"
#include "support/Await.h"
#include "support/Files.h"
#include "support/LogCapture.h"

namespace {

using namespace kelvo;
using android::sp;
using Calls = std::vector<std::string>;
using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds kLimit(30);
constexpr int kSystem = 1000;
constexpr int kApp = 10050;

/** What all listeners of a test were told, and which of them hang. */
class Ears {
  public:
    void hear(const std::string& call, bool hangs) {
        std::unique_lock lock(mMutex);
        mCalls.push_back(call);
        mThreads.insert(std::this_thread::get_id());
        mChanged.notify_all();
        mChanged.wait(lock, [&] { return !hangs || mLetGo; });
    }
    void letGo() {
        const std::lock_guard lock(mMutex);
        mLetGo = true;
        mChanged.notify_all();
    }
    Calls take() {
        const std::lock_guard lock(mMutex);
        return std::exchange(mCalls, {});
    }
    /** The calls once there are that many. */
    Calls await(size_t count) {
        std::unique_lock lock(mMutex);
        mChanged.wait_for(lock, kLimit, [&] { return mCalls.size() >= count; });
        return mCalls;
    }
    size_t threads() {
        const std::lock_guard lock(mMutex);
        return mThreads.size();
    }

  private:
    std::mutex mMutex;  // guards what follows
    std::condition_variable mChanged;
    Calls mCalls;
    std::set<std::thread::id> mThreads;
    bool mLetGo = false;
};

/** How a listener takes its calls. */
struct Manner {
    bool hangs = false;
    std::chrono::milliseconds takes{0};
    android::status_t status = android::OK;
};

class FakeListener : public android::BBinder {
  public:
    FakeListener(std::shared_ptr<Ears> ears, std::string name, const Manner& manner)
          : mEars(std::move(ears)), mName(std::move(name)), mManner(manner) {}

  protected:
    android::status_t onTransact(uint32_t code, const android::Parcel& data, android::Parcel* reply,
                                 uint32_t) override {
        std::this_thread::sleep_for(mManner.takes);
        data.enforceInterface(IKelvoNotifier::descriptor);
        mEars->hear(mName + " " + std::to_string(code) + ":" + std::to_string(data.readInt32()),
                    mManner.hangs);
        reply->writeNoException();
        return mManner.status;
    }

  private:
    const std::shared_ptr<Ears> mEars;
    const std::string mName;
    const Manner mManner;
};

class ListenerCallsTest : public testing::Test {
  protected:
    Listener add(const std::string& name, int uid, const Manner& manner = {}) {
        const Listener listener{new BinderClient(uid, new FakeListener(mEars, name, manner)),
                                mCalls.laneFor(uid, uid == kSystem)};
        mListeners.push_back(listener);
        return listener;
    }
    void tellStatus(int status) {
        mCalls.make(mListeners, {NoticeKind::STATUS, [status](BinderClient& client) {
                                     client.notifyCallback(status);
                                 }});
    }
    void tellBroadcast(int level) {
        mCalls.make(mListeners, {NoticeKind::BROADCAST, [level](BinderClient& client) {
                                     client.notifyBroadCast(level, 0);
                                 }});
    }
    void tellAmbient(int temp) {
        mCalls.make(mListeners, {NoticeKind::AMBIENT,
                                 [temp](BinderClient& client) { client.notifyAmbientTemp(temp); }});
    }
    /** Of the class under test, in this process. */
    static ptrdiff_t threads() { return std::ranges::count(threadNames(getpid()), "listeners"); }
    static bool isOneThreadLeft() {
        return await([] { return threads() == 1; });
    }

    LogCapture log;
    const std::shared_ptr<Ears> mEars = std::make_shared<Ears>();  // also of those that hang
    ListenerCalls mCalls;
    std::vector<Listener> mListeners;
};

}  // namespace

TEST_F(ListenerCallsTest, tellsEachInOrderOnOneThreadThatStays) {
    add("a", kSystem);
    add("b", kApp);
    add("c", kApp);
    tellStatus(5);
    tellBroadcast(6);
    EXPECT_EQ(mEars->take(), (Calls{"a 3:5", "b 3:5", "c 3:5", "a 4:6", "b 4:6", "c 4:6"}))
            << "all before they return";
    EXPECT_EQ(mEars->threads(), 1u);
    EXPECT_EQ(threads(), 1);
    auto others = std::make_unique<ListenerCalls>();
    others->make(mListeners, {NoticeKind::STATUS, [](BinderClient&) {}});
    others.reset();
    EXPECT_TRUE(isOneThreadLeft()) << "the other's has ended";
}

TEST_F(ListenerCallsTest, passesALateOneOverAndTellsItTheLatestOfEachKind) {
    add("a", kApp);
    add("late", kApp, {.hangs = true});
    const Listener gone = add("gone", kSystem, {.hangs = true});
    add("d", kApp);
    const Clock::time_point start = Clock::now();
    tellStatus(1);
    EXPECT_GE(Clock::now() - start, std::chrono::seconds(1));
    EXPECT_LT(Clock::now() - start, std::chrono::seconds(5)) << "one of them the system's";
    EXPECT_EQ(mEars->take(), (Calls{"a 3:1", "late 3:1", "gone 3:1", "d 3:1"}));
    tellAmbient(20);
    tellBroadcast(2);
    tellStatus(3);
    tellStatus(4);
    tellBroadcast(5);
    EXPECT_EQ(mEars->take(), (Calls{"a 5:20", "d 5:20", "a 4:2", "d 4:2", "a 3:3", "d 3:3", "a 3:4",
                                    "d 3:4", "a 4:5", "d 4:5"}));
    mCalls.forget(gone);
    mEars->letGo();
    EXPECT_TRUE(isOneThreadLeft()) << "the others end";
    EXPECT_EQ(mEars->take(), (Calls{"late 3:4", "late 4:5", "late 5:20"}));
    tellStatus(6);
    EXPECT_EQ(mEars->take(), (Calls{"a 3:6", "late 3:6", "gone 3:6", "d 3:6"}));
    for (const int uid : {kApp, kSystem}) {
        const std::string listener = "listener(uid:" + std::to_string(uid) + ")";
        EXPECT_EQ(log.count(ANDROID_LOG_ERROR,
                            listener + " does not answer, it is passed over until it does"),
                  1u);
        EXPECT_EQ(log.count(ANDROID_LOG_INFO, listener + " is passed over no more"), 1u);
    }
}

TEST_F(ListenerCallsTest, isDelayedByManyLateOnesHardlyMoreThanByOne) {
    constexpr size_t kHung = 40;
    constexpr ptrdiff_t kMostOfUid = 8;
    for (size_t i = 0; i < kHung; ++i) {
        add("hangs", i % 2 == 0 ? kApp : kSystem, {.hangs = true});
    }
    add("lives", kSystem);
    const Clock::time_point start = Clock::now();
    tellStatus(1);
    EXPECT_LT(Clock::now() - start, std::chrono::seconds(5));
    EXPECT_EQ(mEars->take().back(), "lives 3:1");
    EXPECT_EQ(threads(), kMostOfUid + kHung / 2 + 1) << "the system's are not bounded";
    const Clock::time_point again = Clock::now();
    tellStatus(2);
    EXPECT_LT(Clock::now() - again, std::chrono::milliseconds(500));
    EXPECT_EQ(mEars->take(), Calls{"lives 3:2"});
    mEars->letGo();
    // The ones that were called are told the second status, the others this alone.
    EXPECT_EQ(mEars->await(kHung).size(), kHung);
    EXPECT_TRUE(isOneThreadLeft());
}

TEST_F(ListenerCallsTest, keepsASlowAppToItsShareOfTheTime) {
    constexpr int kTimes = 12;
    add("slow", kApp, {.takes = std::chrono::milliseconds(400)});
    add("lives", kSystem);
    const Clock::time_point start = Clock::now();
    for (int status = 1; status <= kTimes; ++status) {
        tellStatus(status);
    }
    EXPECT_LT(Clock::now() - start, std::chrono::seconds(4)) << "it needs nearly five";
    const Calls calls = mEars->await(kTimes + 6);
    EXPECT_EQ(std::ranges::count(calls, "slow 3:4"), 1) << "waited for at first";
    EXPECT_EQ(std::ranges::count(calls, 'l', [](const std::string& call) { return call[0]; }),
              kTimes)
            << "each to the other";
    EXPECT_TRUE(isOneThreadLeft()) << "it has been told the latest";
    EXPECT_EQ(mEars->take().back(), "slow 3:" + std::to_string(kTimes));
}

TEST_F(ListenerCallsTest, neverRepeatsAKindThatFailedLate) {
    add("a", kApp, {.hangs = true, .status = android::DEAD_OBJECT});
    tellStatus(1);
    tellStatus(2);
    tellAmbient(20);
    mEars->letGo();
    EXPECT_EQ(mEars->await(2), (Calls{"a 3:1", "a 5:20"}));
}
