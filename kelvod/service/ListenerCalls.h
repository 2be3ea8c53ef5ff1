#pragma once

#include <utils/StrongPointer.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

namespace kelvo {

class BinderClient;
class ListenerLane;

/** What listeners are told, in the order in which one that missed several is told them. */
enum class NoticeKind : size_t { STATUS, BROADCAST, AMBIENT, COMPONENT_HEAT };
inline constexpr size_t kNoticeKinds = 4;

/** One notification, for any listener. `tell` holds all that it uses: a listener may be late. */
struct Notice {
    NoticeKind kind;
    std::function<void(BinderClient& listener)> tell;
};

/** A registered listener. Those of one lane are called by one thread when one of them is late. */
struct Listener {
    android::sp<BinderClient> client;
    std::shared_ptr<ListenerLane> lane;
};

/**
 * Calls listeners one after the other, in the order given, and is kept waiting by none: one that
 * takes more than a second is left to its thread, and another thread calls the rest. It is passed
 * over until its call returns; then that thread tells it the latest of each kind that it missed.
 * Both are logged. Further late ones of the same fan-out are left sooner, so that any number of
 * them costs about two seconds, and lateness costs a listener nothing but the wait. An app's
 * listeners keep fan-outs waiting for two seconds at once and for an eighth of the time; once that
 * is used up its calls are late after a millisecond.
 *
 * A lane is one listener's, or is shared by listeners of one uid when that has many, so that it
 * keeps only so many threads. Besides, one idle thread stays. Thread-safe, but make() has one
 * caller at a time. A program that runs in virtual time links another definition of this class.
 */
class ListenerCalls {
  public:
    ListenerCalls();
    /** Calls that are out go on. */
    ~ListenerCalls();
    ListenerCalls(const ListenerCalls&) = delete;
    ListenerCalls& operator=(const ListenerCalls&) = delete;

    /** For a new listener; a `trusted` one gets its own, and no allowance bounds it. */
    std::shared_ptr<ListenerLane> laneFor(int uid, bool trusted);
    /** Returns when all have been told or are out. */
    void make(std::vector<Listener> listeners, Notice notice);
    /** What the listener missed is not told any more. */
    void forget(const Listener& listener);

  private:
    class Crew;

    const std::shared_ptr<Crew> mCrew;  // the threads' as well; null in virtual time
};

}  // namespace kelvo
