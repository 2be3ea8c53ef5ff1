#include "service/ListenerCalls.h"

#include <pthread.h>
#include <string.h>
#include <utils/Condition.h>
#include <utils/Mutex.h>

#include <algorithm>
#include <array>
#include <map>
#include <optional>

#include "base/Log.h"
#include "base/Time.h"
#include "service/BinderClient.h"

namespace kelvo {

using android::Condition;
using android::Mutex;
using android::sp;

namespace {

constexpr int64_t kPatience = kNanosPerSecond;            // of a fan-out with its first late one
constexpr int64_t kLeastPatience = kNanosPerSecond / 64;  // with one of many
constexpr int64_t kAllowance = 2 * kNanosPerSecond;       // of an app's calls, at once
constexpr int64_t kAllowedShare = 8;                      // of the time: one in so many
constexpr int64_t kPatienceWithout = kNanosPerSecond / 1000;  // for an app that has used it up
constexpr size_t kMostLanes = 8;                              // of a uid
constexpr char kThreadName[] = "listeners";

// Guards lanes, rounds and crews: those of the process, of which the registry has one crew. A leaf,
// listeners are called without it.
Mutex sMutex;

}  // namespace

/** How long an app's listeners have kept the fan-outs waiting; it is forgotten bit by bit. */
class ListenerAllowance {
  public:
    void take(int64_t nanos) REQUIRES(sMutex) {
        mUsed = std::min(used() + nanos, kAllowance);
        mTime = monotonicNanos();
    }
    /** How long the next call may take (ns). */
    int64_t left() const REQUIRES(sMutex) {
        return std::max(kAllowance - used(), kPatienceWithout);
    }

  private:
    int64_t used() const REQUIRES(sMutex) {
        return std::max<int64_t>(mUsed - (monotonicNanos() - mTime) / kAllowedShare, 0);
    }

    int64_t mUsed GUARDED_BY(sMutex) = 0;  // ns, at that time
    int64_t mTime GUARDED_BY(sMutex) = 0;  // monotonic, ns
};

class ListenerLane {
  public:
    /** Without an allowance, `ofOwner` null, its calls may take all the patience there is. */
    ListenerLane(int owner, std::shared_ptr<ListenerAllowance> ofOwner)
          : uid(owner), mAllowance(std::move(ofOwner)) {}

    /** The latest of each kind that a listener missed; empty functions where it missed none. */
    struct Missed {
        sp<BinderClient> client;
        std::array<Notice, kNoticeKinds> notices;
    };

    const int uid;
    bool isOut GUARDED_BY(sMutex) = false;
    uint64_t round GUARDED_BY(sMutex) = 0;  // in which it was called last
    int64_t spent GUARDED_BY(sMutex) = 0;   // ns, in that round's calls that have returned
    // In the order in which they were passed over first.
    std::vector<Missed> missed GUARDED_BY(sMutex);

    /** How long its next call may take (ns). */
    int64_t allowed() const REQUIRES(sMutex) {
        return mAllowance != nullptr ? mAllowance->left() : kPatience;
    }
    void countTime(int64_t nanos) REQUIRES(sMutex) {
        if (mAllowance != nullptr) {
            mAllowance->take(nanos);
        }
    }
    void remember(const sp<BinderClient>& client, const Notice& notice) REQUIRES(sMutex) {
        auto found = std::find_if(missed.begin(), missed.end(),
                                  [&](const Missed& one) { return one.client == client; });
        if (found == missed.end()) {
            found = missed.insert(found, {client, {}});
        }
        found->notices[static_cast<size_t>(notice.kind)] = notice;
    }
    void forget(const sp<BinderClient>& client) REQUIRES(sMutex) {
        missed.erase(std::remove_if(missed.begin(), missed.end(),
                                    [&](const Missed& one) { return one.client == client; }),
                     missed.end());
    }

  private:
    const std::shared_ptr<ListenerAllowance> mAllowance;
};

/** The threads and what they share; lives as long as the last of them. */
class ListenerCalls::Crew : public std::enable_shared_from_this<Crew> {
  public:
    std::shared_ptr<ListenerLane> laneFor(int uid, bool trusted);
    void make(std::vector<Listener> listeners, Notice notice);
    void forget(const Listener& listener);
    void end();

  private:
    /** A fan-out. */
    struct Round {
        const std::vector<Listener> listeners;
        const Notice notice;
        const uint64_t number;
        size_t next GUARDED_BY(sMutex) = 0;                 // listener
        ListenerLane* called GUARDED_BY(sMutex) = nullptr;  // whose call is made
        int64_t allowed GUARDED_BY(sMutex) = 0;             // ns, for it
        int64_t since GUARDED_BY(sMutex) = 0;               // when it was begun (monotonic, ns)
        int64_t patience GUARDED_BY(sMutex) = kPatience;    // ns
        uint64_t takeovers GUARDED_BY(sMutex) = 0;  // tells the present worker from those before
        bool isTaken GUARDED_BY(sMutex) = false;    // by a worker
    };

    static void* threadEntry(void* crew);
    void serve();
    std::shared_ptr<Round> begin(std::vector<Listener> listeners, Notice notice);
    bool man();
    bool awaitLateness(Round& round);
    void leaveLate(Round& round) REQUIRES(sMutex);
    std::shared_ptr<Round> awaitRound();
    bool becomeFree();
    bool finish();
    bool work(const std::shared_ptr<Round>& round);
    uint64_t takeoversOf(const Round& round);
    const Listener* nextListener(Round& round);
    bool countCall(Round& round, ListenerLane& lane, uint64_t takeovers);
    void catchUp(ListenerLane& lane);
    std::optional<ListenerLane::Missed> nextMissed(ListenerLane& lane);

    Condition mPosted;
    Condition mProgress;
    struct App {
        std::vector<std::weak_ptr<ListenerLane>> lanes;
        std::shared_ptr<ListenerAllowance> allowance = std::make_shared<ListenerAllowance>();
    };
    std::map<int, App> mApps GUARDED_BY(sMutex);       // by uid
    std::shared_ptr<Round> mRound GUARDED_BY(sMutex);  // null when there is none
    uint64_t mRounds GUARDED_BY(sMutex) = 0;
    size_t mFreeThreads GUARDED_BY(sMutex) = 0;  // waiting for a round, or about to
    bool mEnds GUARDED_BY(sMutex) = false;
};

std::shared_ptr<ListenerLane> ListenerCalls::Crew::laneFor(int uid, bool trusted) {
    if (trusted) {
        return std::make_shared<ListenerLane>(uid, nullptr);
    }
    Mutex::Autolock lock(sMutex);
    App& app = mApps[uid];
    auto& lanes = app.lanes;
    lanes.erase(std::remove_if(lanes.begin(), lanes.end(),
                               [](const auto& lane) { return lane.expired(); }),
                lanes.end());
    const auto leastUsed = std::min_element(
            lanes.begin(), lanes.end(),
            [](const auto& a, const auto& b) { return a.use_count() < b.use_count(); });
    if (lanes.size() >= kMostLanes) {
        if (auto shared = leastUsed->lock(); shared != nullptr) {
            return shared;
        }
    }
    auto lane = std::make_shared<ListenerLane>(uid, app.allowance);
    lanes.push_back(lane);
    return lane;
}

void ListenerCalls::Crew::make(std::vector<Listener> listeners, Notice notice) {
    const auto round = begin(std::move(listeners), std::move(notice));
    do {
        if (!man()) {
            work(round);  // better late than never
            Mutex::Autolock lock(sMutex);
            mRound = nullptr;
            return;
        }
    } while (awaitLateness(*round));
}

std::shared_ptr<ListenerCalls::Crew::Round> ListenerCalls::Crew::begin(
        std::vector<Listener> listeners, Notice notice) {
    Mutex::Autolock lock(sMutex);
    mRound = std::shared_ptr<Round>(new Round{std::move(listeners), std::move(notice), ++mRounds});
    return mRound;
}

/** Has a thread for the round that nobody has taken. */
bool ListenerCalls::Crew::man() {
    Mutex::Autolock lock(sMutex);
    if (mFreeThreads > 0) {
        mPosted.signal();
        return true;
    }
    auto owned = std::make_unique<std::shared_ptr<Crew>>(shared_from_this());
    pthread_t thread;
    const int error = pthread_create(&thread, nullptr, threadEntry, owned.get());
    if (error != 0) {
        KLOGE("no thread to call listeners: %s", strerror(error));
        return false;
    }
    (void)owned.release();  // the thread's
    pthread_detach(thread);
    return true;
}

/** True when a late listener was left, and the rest needs another thread; false at the end. */
bool ListenerCalls::Crew::awaitLateness(Round& round) {
    Mutex::Autolock lock(sMutex);
    while (mRound.get() == &round) {
        int64_t left = round.patience;
        if (round.called != nullptr) {
            left = std::min(left - round.called->spent, round.allowed) + round.since -
                   monotonicNanos();
        }
        if (left <= 0) {
            leaveLate(round);
            return true;
        }
        mProgress.waitRelative(sMutex, left);
    }
    return false;
}

void ListenerCalls::Crew::leaveLate(Round& round) {
    round.called->isOut = true;
    round.called->countTime(monotonicNanos() - round.since);
    KLOGE("listener(uid:%d) does not answer, it is passed over until it does", round.called->uid);
    round.called = nullptr;
    round.patience = std::max(round.patience / 2, kLeastPatience);
    ++round.takeovers;
    round.isTaken = false;
}

void* ListenerCalls::Crew::threadEntry(void* crew) {
    pthread_setname_np(pthread_self(), kThreadName);
    const std::unique_ptr<std::shared_ptr<Crew>> self(static_cast<std::shared_ptr<Crew>*>(crew));
    (*self)->serve();
    return nullptr;
}

void ListenerCalls::Crew::serve() {
    bool isFree = becomeFree();
    while (isFree) {
        const std::shared_ptr<Round> round = awaitRound();
        if (round == nullptr) {
            return;
        }
        isFree = work(round) ? finish() : becomeFree();
    }
}

/** False when the thread is to end: one that waits is enough. */
bool ListenerCalls::Crew::becomeFree() {
    Mutex::Autolock lock(sMutex);
    const bool isNeeded = mFreeThreads == 0;
    mFreeThreads += isNeeded ? 1 : 0;
    return isNeeded;
}

/** Ends the round. The same: who begins the next one knows whether there is a thread for it. */
bool ListenerCalls::Crew::finish() {
    Mutex::Autolock lock(sMutex);
    mRound = nullptr;
    mProgress.signal();
    const bool isNeeded = mFreeThreads == 0;
    mFreeThreads += isNeeded ? 1 : 0;
    return isNeeded;
}

std::shared_ptr<ListenerCalls::Crew::Round> ListenerCalls::Crew::awaitRound() {
    Mutex::Autolock lock(sMutex);
    while (!mEnds && (mRound == nullptr || mRound->isTaken)) {
        mPosted.wait(sMutex);
    }
    --mFreeThreads;
    if (mEnds) {
        return nullptr;
    }
    mRound->isTaken = true;
    return mRound;
}

/** Calls the listeners that are left. False when one was late: then this thread was its own. */
bool ListenerCalls::Crew::work(const std::shared_ptr<Round>& round) {
    const uint64_t takeovers = takeoversOf(*round);
    while (const Listener* const listener = nextListener(*round)) {
        round->notice.tell(*listener->client);
        if (!countCall(*round, *listener->lane, takeovers)) {
            catchUp(*listener->lane);
            return false;
        }
    }
    return true;
}

uint64_t ListenerCalls::Crew::takeoversOf(const Round& round) {
    Mutex::Autolock lock(sMutex);
    return round.takeovers;
}

/** Null at the end of the round. */
const Listener* ListenerCalls::Crew::nextListener(Round& round) {
    Mutex::Autolock lock(sMutex);
    while (round.next < round.listeners.size()) {
        const Listener& listener = round.listeners[round.next++];
        ListenerLane& lane = *listener.lane;
        if (lane.isOut) {
            lane.remember(listener.client, round.notice);
            continue;
        }
        if (lane.round != round.number) {
            lane.round = round.number;
            lane.spent = 0;
        }
        round.called = &lane;
        round.allowed = lane.allowed();
        round.since = monotonicNanos();
        if (round.allowed < round.patience) {
            mProgress.signal();  // whoever waits for this call counts on more time
        }
        return &listener;
    }
    return nullptr;
}

/** False when the round went on without this worker meanwhile. */
bool ListenerCalls::Crew::countCall(Round& round, ListenerLane& lane, uint64_t takeovers) {
    Mutex::Autolock lock(sMutex);
    if (round.takeovers != takeovers) {
        return false;
    }
    const int64_t taken = monotonicNanos() - round.since;
    lane.spent += taken;
    lane.countTime(taken);
    round.called = nullptr;
    return true;
}

void ListenerCalls::Crew::catchUp(ListenerLane& lane) {
    while (const auto missed = nextMissed(lane)) {
        for (const Notice& notice : missed->notices) {
            if (notice.tell != nullptr) {
                notice.tell(*missed->client);
            }
        }
    }
}

std::optional<ListenerLane::Missed> ListenerCalls::Crew::nextMissed(ListenerLane& lane) {
    Mutex::Autolock lock(sMutex);
    if (lane.missed.empty()) {
        lane.isOut = false;
        KLOGI("listener(uid:%d) is passed over no more", lane.uid);
        return std::nullopt;
    }
    ListenerLane::Missed next = std::move(lane.missed.front());
    lane.missed.erase(lane.missed.begin());
    return next;
}

void ListenerCalls::Crew::forget(const Listener& listener) {
    Mutex::Autolock lock(sMutex);
    listener.lane->forget(listener.client);
}

void ListenerCalls::Crew::end() {
    Mutex::Autolock lock(sMutex);
    mEnds = true;
    mPosted.broadcast();
}

ListenerCalls::ListenerCalls() : mCrew(std::make_shared<Crew>()) {}

ListenerCalls::~ListenerCalls() {
    mCrew->end();
}

std::shared_ptr<ListenerLane> ListenerCalls::laneFor(int uid, bool trusted) {
    return mCrew->laneFor(uid, trusted);
}

void ListenerCalls::make(std::vector<Listener> listeners, Notice notice) {
    if (!listeners.empty()) {
        mCrew->make(std::move(listeners), std::move(notice));
    }
}

void ListenerCalls::forget(const Listener& listener) {
    mCrew->forget(listener);
}

}  // namespace kelvo
