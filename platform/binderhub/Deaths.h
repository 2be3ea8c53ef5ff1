#pragma once

#include <linux/android/binder.h>

#include <cstdint>

#include "References.h"
#include "Scheduler.h"

namespace binderhub {

/** Notices of the death of nodes. Each method returns false when the command has no effect. */
class Deaths {
  public:
    Deaths(Scheduler& scheduler, References& references)
          : mScheduler(scheduler), mReferences(references) {}

    /** BC_REQUEST_DEATH_NOTIFICATION: at once if the node is dead already. */
    bool request(Process& process, const binder_handle_cookie& what);

    /** BC_CLEAR_DEATH_NOTIFICATION: confirmed when a notice that is out has been acknowledged. */
    bool clear(Thread& thread, const binder_handle_cookie& what);

    /** BC_DEAD_BINDER_DONE. */
    bool acknowledge(Thread& thread, uint64_t cookie);

    /** The node has just died. */
    void announce(Node& node);

  private:
    void confirmClear(Thread& thread, Death& death);

    Scheduler& mScheduler;
    References& mReferences;
};

}  // namespace binderhub
