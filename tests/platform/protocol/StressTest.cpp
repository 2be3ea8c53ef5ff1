// Processes that call each other at random from many threads while others are killed and started
// anew. KELVO_STRESS_CALLS (of each thread) and KELVO_STRESS_SEED change a run.

#include <binder/Binder.h>
#include <binder/IServiceManager.h>
#include <binder/Parcel.h>
#include <binder/ProcessState.h>
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <memory>
#include <mutex>
#include <random>
#include <semaphore>
#include <sstream>
#include <thread>

#include "support/BinderWorld.h"
#include "support/Json.h"

namespace android {
namespace {

constexpr size_t kProcesses = 8;
constexpr size_t kThreads = 8;
constexpr int kKills = 60;
constexpr int kProgressTexts = 4;
constexpr size_t kHeld = 16;
constexpr std::chrono::seconds kLimit(25);  // for any call of a worker to come back
constexpr int32_t kWord = 41;

// A service that answered DEAD_OBJECT would itself be taken for dead, for ever, by all who hold it.
constexpr status_t kCallbackDied = INVALID_OPERATION;

// Each takes a word and a binder.
enum Code : uint32_t {
    kEcho = IBinder::FIRST_CALL_TRANSACTION,  // → word + 1
    kCallBack,                                // → what the binder's kEcho answers
    kHold,                                    // keeps the binder in place of an older one
    kSwap,                                    // → a binder held before, in place of this one
    kCodeEnd,
};

int numberFrom(const char* name, int otherwise) {
    const char* const text = getenv(name);
    return text == nullptr ? otherwise : std::stoi(text);
}

String16 nameOf(size_t slot) {
    return String16(("stress" + std::to_string(slot)).c_str());
}

class Node : public BBinder {
    status_t onTransact(uint32_t code, const Parcel& in, Parcel* out, uint32_t flags) override {
        const int32_t word = in.readInt32();
        const sp<IBinder> binder = in.readStrongBinder();
        switch (code) {
            case kEcho:
                return out->writeInt32(word + 1);
            case kCallBack: {
                const status_t status = binder->transact(kEcho, in, out);
                return status == DEAD_OBJECT ? kCallbackDied : status;
            }
            case kHold:
                swap(binder);
                return OK;
            case kSwap:
                return out->writeStrongBinder(swap(binder));
            default:
                return BBinder::onTransact(code, in, out, flags);
        }
    }

    sp<IBinder> swap(sp<IBinder> binder) {
        const std::lock_guard lock(mLock);
        std::swap(mHeld[mNext++ % kHeld], binder);
        return binder;
    }

    std::mutex mLock;  // guards what follows
    std::array<sp<IBinder>, kHeld> mHeld;
    size_t mNext = 0;
};

struct Mourner : IBinder::DeathRecipient {
    void binderDied(const wp<IBinder>&) override {}
};

/** One calling thread of a worker. */
class Caller {
  public:
    Caller(uint32_t seed, const sp<IBinder>& own) : mRandom(seed), mOwn(own) {}

    void callOnce() {
        mSlot = pick(kProcesses);
        sp<IBinder>& peer = mPeers[mSlot];
        mCode = 0;
        if (peer == nullptr || !peer->isBinderAlive()) {
            peer = defaultServiceManager()->checkService(nameOf(mSlot));
        }
        mCode = kEcho + pick(kCodeEnd - kEcho);
        if (peer != nullptr) {
            call(peer, mCode, mCode == kHold && pick(2) == 0 ? IBinder::FLAG_ONEWAY : 0);
        }
    }

    /** False, and a text on standard error, when a call was wrong or `hangs`, or none went well. */
    bool judge(bool hangs) const {
        if (!hangs && mWrong == OK && mGood > 0) {
            return true;
        }
        std::fprintf(stderr, "%d: code %u to %zu %s, status %d, %d good calls\n", getpid(),
                     mCode.load(), mSlot.load(), hangs ? "hangs" : "ended", mWrong.load(),
                     mGood.load());
        return false;
    }

  private:
    uint32_t pick(size_t count) { return static_cast<uint32_t>(mRandom() % count); }

    void call(const sp<IBinder>& peer, uint32_t code, uint32_t flags) {
        Parcel data;
        Parcel reply;
        data.writeInt32(kWord);
        const sp<IBinder> known = mFriends[pick(kHeld)];
        const sp<IBinder> fresh = pick(3) == 0 ? sp<IBinder>(new Node) : mOwn;
        data.writeStrongBinder(known == nullptr ? fresh : known);
        const status_t status = peer->transact(code, data, &reply, flags);
        if (status != OK) {
            const bool full = status == FAILED_TRANSACTION && flags == IBinder::FLAG_ONEWAY;
            const bool died =
                    status == DEAD_OBJECT || (code == kCallBack && status == kCallbackDied);
            mWrong = died || full ? mWrong.load() : status;
            return;
        }
        ++mGood;
        if (code == kSwap) {
            befriend(reply.readStrongBinder());
        } else if (code != kHold && reply.readInt32() != kWord + 1) {
            mWrong = BAD_VALUE;
        }
    }

    void befriend(const sp<IBinder>& given) {
        sp<IBinder>& place = mFriends[pick(kHeld)];
        if (place != nullptr && pick(2) == 0) {
            place->unlinkToDeath(mMourner);
        }
        place = given;
        if (given != nullptr) {
            given->linkToDeath(mMourner);
        }
    }

    std::mt19937 mRandom;
    const sp<IBinder> mOwn;
    const sp<Mourner> mMourner = new Mourner;
    std::array<sp<IBinder>, kProcesses> mPeers;
    std::array<sp<IBinder>, kHeld> mFriends;
    std::atomic<uint32_t> mCode = 0;  // of the present call; 0: to the service manager
    std::atomic<size_t> mSlot = 0;    // whom it goes to
    std::atomic<int> mGood = 0;
    std::atomic<status_t> mWrong = OK;  // a status that no call should have
};

/** Runs all callers; false when one of them hangs or saw something wrong. */
bool callFromAllThreads(RoleLink& link, uint32_t seed, const sp<IBinder>& own) {
    const int calls = numberFrom("KELVO_STRESS_CALLS", DEFAULT_CALLS);
    static std::vector<std::unique_ptr<Caller>> callers;  // lives on when a call hangs
    static std::counting_semaphore<kThreads> ended(0);
    static std::atomic<int> callsDone = 0;
    for (uint32_t i = 0; i < kThreads; ++i) {
        callers.push_back(std::make_unique<Caller>(seed + i, own));
        std::thread([&link, calls, i, caller = callers.back().get()] {
            for (int count = 0; count < calls; ++count) {
                caller->callOnce();
                ++callsDone;
                if (i == 0 && count % (calls / kProgressTexts) == 0) {
                    link.send("progress");
                }
            }
            ended.release();
        }).detach();
    }
    // A machine that is busy with other things makes them slow, but not stand still.
    size_t left = kThreads;
    for (int before = -1; left > 0 && before != callsDone;) {
        before = callsDone;
        while (left > 0 && ended.try_acquire_for(kLimit)) {
            --left;
        }
    }
    const bool hangs = left > 0;
    bool good = !hangs;
    for (const auto& caller : callers) {
        good = caller->judge(hangs) && good;
    }
    return good;
}

int work(RoleLink& link) {
    std::istringstream words(link.argument());
    size_t slot = 0;
    uint32_t seed = 0;
    words >> slot >> seed;
    // Enough for each call of everyone to wait here at once: none can wait for a free thread.
    ProcessState::self()->setThreadPoolMaxThreadCount(kProcesses * kThreads);
    ProcessState::self()->startThreadPool();
    const sp<IBinder> node = new Node;
    if (defaultServiceManager()->addService(nameOf(slot), node) != OK) {
        return 1;
    }
    link.send(callFromAllThreads(link, seed, node) ? "done" : "failed");
    link.receive(-1);  // the others still call us
    return 0;
}

const Role kWork("work", work);

/** Whether all that is left is the service manager's own binder. */
bool hubHoldsNothing() {
    Json::Value totals = BinderWorld::hubState()["totals"];
    totals.removeMember("threads");
    // The processes are the service manager, this one, and the one that asks.
    return totals == parsed("{'processes':3,'nodes':1,'handles':0,'buffers':0,'bytes':0,"
                            "'transactions':0,'death_notices':0}");
}

TEST(StressTest, survivesKills) {
    const auto seed = static_cast<uint32_t>(
            numberFrom("KELVO_STRESS_SEED", static_cast<int>(std::random_device()() >> 1)));
    std::printf("KELVO_STRESS_SEED=%u\n", seed);
    std::mt19937 random(seed);
    BinderWorld world;
    std::array<RoleProcess*, kProcesses> workers{};
    const auto startWorker = [&](size_t slot) {
        workers[slot] = &world.start("work", std::to_string(slot) + " " + std::to_string(random()));
    };
    for (size_t slot = 0; slot < kProcesses; ++slot) {
        startWorker(slot);
    }
    for (int i = 0; i < kKills; ++i) {
        const size_t slot = random() % kProcesses;
        const std::string text = workers[slot]->receive();
        ASSERT_TRUE(text == "progress" || text == "done") << text;
        workers[slot]->kill();
        startWorker(slot);
    }
    for (RoleProcess* worker : workers) {
        std::string text;
        while ((text = worker->receive()) == "progress") {
        }
        EXPECT_EQ("done", text);
    }
    if (BinderWorld::onKernel()) {
        return;  // it does not tell what it holds
    }
    for (const Json::Value& process : BinderWorld::hubState()["processes"]) {
        EXPECT_EQ(0, process["mistakes"].asInt()) << process;
    }
    world.endRoles();
    const auto limit = std::chrono::steady_clock::now() + kLimit;
    while (!hubHoldsNothing() && std::chrono::steady_clock::now() < limit) {
    }
    EXPECT_TRUE(hubHoldsNothing()) << BinderWorld::hubState();
}

}  // namespace
}  // namespace android
