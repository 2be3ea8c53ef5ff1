#pragma once

#include <android-base/unique_fd.h>
#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include "Connection.h"
#include "Driver.h"
#include "HubSocket.h"
#include "Process.h"

namespace binderhub {

using Processes = std::unordered_map<const Process*, std::unique_ptr<Process>>;

/** The binder driver for whoever is connected. One thread. */
class Hub {
  public:
    Hub();
    ~Hub();
    Hub(const Hub&) = delete;
    Hub& operator=(const Hub&) = delete;

    /** Whether it could be made at all. */
    bool isValid() const { return mEpoll.get() >= 0; }

    /** Takes a process's connection; closes it when there are too many. */
    void attach(android::base::unique_fd socket, pid_t pid, uid_t uid);

    /** Takes whoever connects to this socket. */
    void listen(android::base::unique_fd socket);

    /** step() returns false once this descriptor is readable. */
    void stopOn(android::base::unique_fd signals);

    /**
     * Waits at most so long (ms; -1: without end) for messages, and carries out what came. False
     * when it is to stop.
     */
    bool step(int timeout);

    /** What it holds. */
    const Driver& driver() const { return mDriver; }
    const Processes& processes() const { return mProcesses; }

  private:
    /** What a user has of the hub. */
    struct Holdings {
        size_t processes = 0;
        size_t connections = 0;  // those of processes and of threads
    };

    bool watch(Connection& connection) const;
    bool mayHaveMore(uid_t uid, bool process) const;
    void handle(Connection& connection);
    void accept();
    void pauseAccepting(bool pause);
    bool receive(Connection& connection);
    bool runMessage(Connection& connection);
    bool runThreadMessage(Thread& thread);
    bool runProcessMessage(Process& process);
    bool runRequest(Process& process);
    bool answer(Process& process, int status, std::span<const uint8_t> payload = {},
                std::span<const int> descriptors = {}) const;
    bool addThread(Process& process);
    int becomeManager(Process& process);
    bool answerNodeInfo(Process& process) const;
    void deliverReady();
    bool deliver(Thread& thread);
    void drop(Thread& thread);
    void drop(Process& process);

    android::base::unique_fd mEpoll;
    Connection mListener;
    Connection mStop;
    bool mStopped = false;
    bool mAcceptingPaused = false;

    Receiver mReceiver;
    InMessage mMessage;
    std::vector<int> mDescriptors;

    Driver mDriver;
    Processes mProcesses;
    std::unordered_map<uid_t, Holdings> mHoldings;  // of those who have any
    std::optional<uid_t> mManagerUid;

    // Gone, but events that were read in the same batch may still name their connections.
    std::vector<std::unique_ptr<Process>> mDroppedProcesses;
    std::vector<std::unique_ptr<Thread>> mDroppedThreads;
};

}  // namespace binderhub
