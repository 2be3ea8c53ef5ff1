#include "sim/live/LiveFramework.h"

#include <poll.h>

#include <algorithm>
#include <set>

#include "common/Overloaded.h"
#include "sim/live/FrameworkActor.h"
#include "sim/scenario/Event.h"

namespace sim {

namespace {

constexpr std::chrono::milliseconds kMoment(50);  // at most of one call of work()
constexpr uint32_t kRootUid = 0;
constexpr uint32_t kSystemUid = 1000;

std::set<std::string> listenersIn(const Transact& transact) {
    std::set<std::string> ids;
    for (const Argument& argument : transact.args) {
        if (const auto* listener = std::get_if<ListenerArgument>(&argument)) {
            ids.insert(listener->id);
        }
    }
    return ids;
}

/** The listener in whose process this is performed; "" when it is none's. */
std::string performerOf(const Deed& deed) {
    return std::visit(common::Overloaded{[](const Listen& listen) { return listen.id; },
                                         [](const Unlisten& unlisten) { return unlisten.id; },
                                         [](const ListenerDies& dies) { return dies.id; },
                                         [](const ListenerFails& fails) { return fails.id; },
                                         [](const Transact& transact) {
                                             const std::set<std::string> ids =
                                                     listenersIn(transact);
                                             return ids.empty() ? std::string() : *ids.begin();
                                         },
                                         [](const auto&) { return std::string(); }},
                      deed);
}

/** The hub takes its own user for the system; nobody can be someone else. */
std::optional<std::string> uidProblem(uint32_t uid) {
    if (uid == kRootUid || uid == kSystemUid) {
        return std::nullopt;
    }
    return "a live phone's framework calls as the user that runs it, not as uid " +
           std::to_string(uid);
}

}  // namespace

LiveFramework::LiveFramework(const Scenario& scenario, std::vector<std::string> command,
                             std::string root)
      : mScenario(scenario),
        mCommand(std::move(command)),
        mRoot(std::move(root)),
        mEvents(mRoot + "/data/framework.jsonl", std::ios::app) {}

LiveFramework::~LiveFramework() = default;

std::optional<std::string> LiveFramework::problem(const Deed& deed) {
    if (const auto* dump = std::get_if<Dump>(&deed)) {
        return uidProblem(dump->uid);
    }
    const auto* transact = std::get_if<Transact>(&deed);
    if (transact == nullptr) {
        return std::nullopt;
    }
    if (listenersIn(*transact).size() > 1) {
        return "on a live phone each listener is a process of its own: a call can hold one";
    }
    return uidProblem(transact->uid);
}

void LiveFramework::work(int64_t timeMs) {
    mTimeMs = timeMs;
    for (const auto& [id, one] : mActors) {
        take(*one);
    }
    const Clock::time_point end = Clock::now() + kMoment;
    while (!isIdle()) {
        if (mBusy == nullptr) {
            if (!isNextDue()) {
                return;
            }
            startNext();
        }
        if (!waitForBusy(end)) {
            return;
        }
    }
}

bool LiveFramework::isNextDue() const {
    const int64_t distance = mScenario.timeline[mWaiting.front()].timeMs - mLatestDueMs;
    return mTimeMs - mLatestDoneMs >= distance / 2;
}

void LiveFramework::startNext() {
    const size_t action = mWaiting.front();
    mWaiting.pop_front();
    mLatestDueMs = mScenario.timeline[action].timeMs;
    mLatestDoneMs = mTimeMs;
    const Deed& deed = mScenario.timeline[action].deed;
    if (const auto* dies = std::get_if<ListenerDies>(&deed)) {
        take(actor(dies->id));  // what it heard while it lived
        mActors.erase(dies->id);
        return;
    }
    mBusy = &actor(performerOf(deed));
    mBegun = Clock::now();
    mBusy->start(action);
}

FrameworkActor& LiveFramework::actor(const std::string& id) {
    std::unique_ptr<FrameworkActor>& known = mActors[id];
    if (known == nullptr) {
        const std::string log = mRoot + "/data/framework-" + std::to_string(++mStarted) + ".log";
        known = std::make_unique<FrameworkActor>(mCommand, mRoot, log);
    }
    return *known;
}

bool LiveFramework::waitForBusy(Clock::time_point end) {
    while (mBusy != nullptr) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
        pollfd fd{mBusy->fd(), POLLIN, 0};
        if (poll(&fd, 1, static_cast<int>(std::max<int64_t>(left.count(), 0))) <= 0) {
            return false;
        }
        take(*mBusy);
        if ((fd.revents & POLLHUP) != 0) {
            return false;  // ending() tells of it
        }
    }
    return true;
}

void LiveFramework::take(FrameworkActor& from) {
    const bool done = from.takeLines(
            [&](const std::string& event) { mEvents << atTime(event, mTimeMs) << std::endl; });
    if (done) {
        mBusy = nullptr;
        mLatestDoneMs = mTimeMs;
    }
}

std::optional<ProcessEnding> LiveFramework::ending() {
    for (const auto& [id, one] : mActors) {
        if (const auto how = one->ending()) {
            return ProcessEnding{"a framework process", *how, one->log()};
        }
    }
    return std::nullopt;
}

}  // namespace sim
