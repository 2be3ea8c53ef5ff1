#pragma once

#include <cstddef>
#include <cstdint>

#include "Connection.h"
#include "List.h"
#include "Work.h"

namespace binderhub {

struct Process;
struct Transaction;
struct WaitingTag;
struct ReadyTag;

/** A thread of a process, as far as it uses binder. */
struct Thread : Link<WaitingTag>, Link<ReadyTag> {
    /** What it said of itself: BC_REGISTER_LOOPER, BC_ENTER_LOOPER, BC_EXIT_LOOPER. */
    enum Looper : uint8_t { kRegistered = 1, kEntered = 2, kExited = 4 };

    explicit Thread(Process& threadProcess) : process(threadProcess) {}

    bool isLooper() const { return (looper & (kRegistered | kEntered)) != 0; }

    /** Whether it may take work that is not for it in particular. */
    bool isAvailable() const { return stack == nullptr && !hasUrgent && isLooper(); }

    void leaveWaiting() { Link<WaitingTag>::unlink(); }
    void leaveReady() { Link<ReadyTag>::unlink(); }

    Process& process;
    Connection connection;
    WorkList todo;
    bool hasUrgent = false;     ///< `todo` has work that is worth waking the thread
    bool wantsReturns = false;  ///< it has asked and was not answered yet
    uint8_t looper = 0;
    size_t unreadResults = 0;
    Transaction* stack = nullptr;  ///< the innermost two-way call that it makes or handles
};

}  // namespace binderhub
