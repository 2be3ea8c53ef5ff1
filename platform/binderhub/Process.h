#pragma once

#include <sys/types.h>

#include <cstdint>
#include <memory>
#include <unordered_map>

#include "Buffer.h"
#include "Connection.h"
#include "HandleTable.h"
#include "Thread.h"
#include "Work.h"

namespace binderhub {

/** A process that uses the hub, and all that the hub keeps for it. */
struct Process {
    Process(pid_t processPid, uid_t processUid, uid_t processShownUid)
          : pid(processPid), uid(processUid), shownUid(processShownUid) {
        connection.process = this;
    }

    const pid_t pid;
    const uid_t uid;
    const uid_t shownUid;  ///< what those whom it calls are told
    Connection connection;
    bool greeted = false;  ///< has sent kHello
    bool broken = false;   ///< has taken more than a bound allows, and is to be dropped

    std::unordered_map<const Thread*, std::unique_ptr<Thread>> threads;
    uint32_t maxThreads = 0;
    uint32_t requestedThreads = 0;  ///< asked for with BR_SPAWN_LOOPER, not registered yet
    uint32_t startedThreads = 0;    ///< have registered

    std::unordered_map<uint64_t, Node*> nodes;  ///< by ptr
    HandleTable handles;
    BufferTable buffers;

    WorkList todo;
    List<Thread, WaitingTag> waiting;  ///< threads for `todo`, the last to come first

    size_t deaths = 0;
    std::unordered_multimap<uint64_t, Death*> toldDeaths;  ///< not acknowledged, by cookie

    uint64_t mistakes = 0;  ///< commands without effect: what they name is not there
};

}  // namespace binderhub
