#include "Hub.h"

#include <sys/epoll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

#include "Descriptors.h"
#include "Limits.h"

using android::base::unique_fd;

namespace binderhub {

namespace {

/** What the hub's own user is for those whom it calls: the system. */
constexpr uid_t kSystemUid = 1000;
constexpr uid_t kRootUid = 0;

constexpr size_t kEventsAtOnce = 64;

/** How long nobody is accepted when there was no descriptor for one (ms). */
constexpr int kAcceptPause = 200;

uid_t shownUid(uid_t uid) {
    return uid == geteuid() ? kSystemUid : uid;
}

}  // namespace

Hub::Hub() : mEpoll(epoll_create1(EPOLL_CLOEXEC)) {}

Hub::~Hub() {
    while (!mProcesses.empty()) {
        drop(*mProcesses.begin()->second);
    }
}

bool Hub::watch(Connection& connection) const {
    epoll_event event = {};
    event.events = EPOLLIN;
    event.data.ptr = &connection;
    return epoll_ctl(mEpoll.get(), EPOLL_CTL_ADD, connection.socket.get(), &event) == 0;
}

/** One app, in however many processes, is not to take what all others need. */
bool Hub::mayHaveMore(uid_t uid, bool process) const {
    const auto found = mHoldings.find(uid);
    if (found == mHoldings.end() || uid == geteuid() || uid == kRootUid) {
        return true;
    }
    return found->second.connections < kMaxConnectionsOfUid &&
           (!process || found->second.processes < kMaxProcessesOfUid);
}

void Hub::attach(unique_fd socket, pid_t pid, uid_t uid) {
    if (mProcesses.size() >= kMaxProcesses || !mayHaveMore(uid, true) ||
        !isAffordable(socket.get())) {
        return;
    }
    auto process = std::make_unique<Process>(pid, uid, shownUid(uid));
    process->connection.socket = std::move(socket);
    if (watch(process->connection)) {
        const Process* const key = process.get();
        mProcesses[key] = std::move(process);
        ++mHoldings[uid].processes;
        ++mHoldings[uid].connections;
    }
}

void Hub::listen(unique_fd socket) {
    mListener.socket = std::move(socket);
    watch(mListener);
}

void Hub::stopOn(unique_fd signals) {
    mStop.socket = std::move(signals);
    watch(mStop);
}

bool Hub::step(int timeout) {
    std::array<epoll_event, kEventsAtOnce> events;
    if (mAcceptingPaused) {
        timeout = timeout < 0 ? kAcceptPause : std::min(timeout, kAcceptPause);
    }
    const int count = epoll_wait(mEpoll.get(), events.data(), kEventsAtOnce, timeout);
    if (mAcceptingPaused && count == 0) {
        pauseAccepting(false);
    }
    for (int i = 0; i < count; ++i) {
        handle(*static_cast<Connection*>(events[static_cast<size_t>(i)].data.ptr));
    }
    mDroppedThreads.clear();
    mDroppedProcesses.clear();
    return !mStopped;
}

void Hub::handle(Connection& connection) {
    if (!connection.open()) {
        return;
    }
    if (&connection == &mStop) {
        mStopped = true;
    } else if (&connection == &mListener) {
        accept();
    } else if (!receive(connection)) {
        drop(*connection.process);
    }
    deliverReady();
}

void Hub::accept() {
    unique_fd socket(accept4(mListener.socket.get(), nullptr, nullptr, SOCK_CLOEXEC));
    if (socket.get() < 0) {
        if (errno == EMFILE || errno == ENFILE || errno == ENOMEM || errno == ENOBUFS) {
            pauseAccepting(true);
        }
        return;
    }
    ucred peer = {};
    socklen_t size = sizeof(peer);
    if (getsockopt(socket.get(), SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0) {
        attach(std::move(socket), peer.pid, peer.uid);
    }
}

/** Whoever waits to be accepted would otherwise keep the hub from ever waiting. */
void Hub::pauseAccepting(bool pause) {
    mAcceptingPaused = pause;
    if (pause) {
        epoll_ctl(mEpoll.get(), EPOLL_CTL_DEL, mListener.socket.get(), nullptr);
    } else {
        watch(mListener);
    }
}

/** Returns whether the process may stay. */
bool Hub::receive(Connection& connection) {
    const int status = mReceiver.receive(connection.socket.get(), false, kMaxPayload, &mMessage);
    if (status == -EAGAIN || status == -EINTR) {
        return true;
    }
    if (status == 1) {
        return runMessage(connection);
    }
    const bool ended = status == 0 || status == -ECONNRESET;
    if (connection.thread == nullptr || !ended) {
        return false;
    }
    drop(*connection.thread);
    return true;
}

bool Hub::runMessage(Connection& connection) {
    const bool mayStay = connection.thread == nullptr ? runProcessMessage(*connection.process)
                                                      : runThreadMessage(*connection.thread);
    // Copies have gone into buffers. Someone may wait for the last one of a pipe's end to close.
    mMessage.descriptors.clear();
    return mayStay;
}

bool Hub::runThreadMessage(Thread& thread) {
    const HubHeader& header = mMessage.header;
    const bool wantsReturns = (header.flags & kWantsReturns) != 0;
    if (header.kind != kExchange || (wantsReturns && thread.wantsReturns) ||
        !mDriver.commands.run(thread, mMessage)) {
        return false;
    }
    thread.wantsReturns = thread.wantsReturns || wantsReturns;
    mDriver.scheduler.update(thread);
    return true;
}

void Hub::deliverReady() {
    while (Thread* thread = mDriver.scheduler.nextReady()) {
        if (!deliver(*thread)) {
            drop(thread->process);
        }
    }
}

bool Hub::deliver(Thread& thread) {
    Returns& returns = mDriver.returns;
    if (!returns.take(thread)) {
        mDriver.scheduler.update(thread);
        return true;
    }
    thread.wantsReturns = false;
    OutMessage message;
    message.header.kind = kExchange;
    message.commands = returns.bytes();
    Buffer* const buffer = returns.buffer();
    mDescriptors.clear();
    if (buffer != nullptr) {
        message.header.bufferId = buffer->id;
        message.payload = buffer->payload;
        for (const unique_fd& descriptor : buffer->descriptors) {
            mDescriptors.push_back(descriptor.get());
        }
    }
    message.descriptors = mDescriptors;
    const int status = sendMessage(thread.connection.socket.get(), message, false);
    if (buffer != nullptr) {
        thread.process.buffers.dropContent(*buffer);
    }
    // A peer that has closed this connection is found out when it is read.
    return status == 0 || status == -EPIPE;
}

void Hub::drop(Thread& thread) {
    mDriver.reaper.release(thread);
    thread.connection.socket.reset();
    --mHoldings[thread.process.uid].connections;
    const auto found = thread.process.threads.find(&thread);
    mDroppedThreads.push_back(std::move(found->second));
    thread.process.threads.erase(found);
}

void Hub::drop(Process& process) {
    mDriver.reaper.release(process);
    process.connection.socket.reset();
    for (const auto& [key, thread] : process.threads) {
        thread->connection.socket.reset();
    }
    Holdings& holdings = mHoldings[process.uid];
    holdings.connections -= process.threads.size() + 1;
    if (--holdings.processes == 0) {
        mHoldings.erase(process.uid);
    }
    const auto found = mProcesses.find(&process);
    mDroppedProcesses.push_back(std::move(found->second));
    mProcesses.erase(found);
}

}  // namespace binderhub
