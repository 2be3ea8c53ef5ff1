#pragma once

#include <android-base/unique_fd.h>

namespace binderhub {

struct Process;
struct Thread;

/** The hub's end of a socket, and whose it is. */
struct Connection {
    bool open() const { return socket.get() >= 0; }

    android::base::unique_fd socket;
    Process* process = nullptr;  ///< null: not a process's (the listener, the stop signal)
    Thread* thread = nullptr;    ///< null: the process connection
};

}  // namespace binderhub
