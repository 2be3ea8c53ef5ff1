#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <fstream>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "sim/process/BinderPlatform.h"
#include "sim/scenario/Scenario.h"

namespace sim {

class FrameworkActor;

/**
 * Performs the framework's actions on a live phone through binder. Each listener is a process of
 * its own (runFrameworkProcess), so that it can die; one more does what belongs to no listener.
 * Actions keep their order: one begins when the one before is done. When they are late they catch
 * up, but at least half the scenario's time lies between them, or the daemon would meet at once
 * what belongs after each other. A daemon that does not answer holds up the later actions, never
 * the caller.
 *
 * What the daemon answers and tells is appended to the file "data/framework.jsonl" as replay's
 * events; their time is when it was seen. Not thread-safe. Failures throw.
 */
class LiveFramework {
  public:
    /** `command` runs a framework process for the scenario below the folder `root`. */
    LiveFramework(const Scenario& scenario, std::vector<std::string> command, std::string root);
    ~LiveFramework();

    /** The scenario's action with this index is due. */
    void add(size_t action) { mWaiting.push_back(action); }
    /** Goes on with what is due, for a moment, and takes what has been told meanwhile. */
    void work(int64_t timeMs);
    bool isIdle() const { return mBusy == nullptr && mWaiting.empty(); }
    /** Whether an action is going on that has not been answered for this long. */
    bool isHeldUp(std::chrono::milliseconds limit) const {
        return mBusy != nullptr && Clock::now() - mBegun > limit;
    }
    /** A process that has ended although nobody asked for it. */
    std::optional<ProcessEnding> ending();

    /** Why this action cannot be performed on a live phone; none when it can. */
    static std::optional<std::string> problem(const Deed& deed);

  private:
    using Clock = std::chrono::steady_clock;

    bool isNextDue() const;
    void startNext();
    FrameworkActor& actor(const std::string& id);
    /** Whether the action that is going on was done by then. */
    bool waitForBusy(Clock::time_point end);
    void take(FrameworkActor& from);

    const Scenario& mScenario;
    const std::vector<std::string> mCommand;
    const std::string mRoot;
    std::ofstream mEvents;
    std::deque<size_t> mWaiting;
    std::map<std::string, std::unique_ptr<FrameworkActor>> mActors;  // by listener; "" for none
    FrameworkActor* mBusy = nullptr;                                 // performs an action
    Clock::time_point mBegun;                                        // mBusy's action
    int64_t mLatestDueMs = 0;   // by the scenario, of the action that was begun last
    int64_t mLatestDoneMs = 0;  // when it was done, in the scenario's time
    int mStarted = 0;
    int64_t mTimeMs = 0;  // of the scenario, when work() was called last
};

}  // namespace sim
