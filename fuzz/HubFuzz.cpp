// Processes of the binder hub that send well-formed, wrong and broken messages in any order, and
// end at any time. After each the hub's bookkeeping is right, and after the last it holds nothing.

#include <linux/android/binder.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "Hub.h"
#include "HubInvariants.h"
#include "HubSocket.h"
#include "HubState.h"
#include "Input.h"
#include "Limits.h"

using android::base::unique_fd;

namespace binderhub {

namespace {

constexpr size_t kProcesses = 3;
constexpr size_t kThreads = 2;    // of each
constexpr uint32_t kMaxName = 6;  // of handles, nodes and cookies: few, so that they meet
constexpr uint32_t kMaxBufferId = 24;
constexpr size_t kMaxObjects = 4;
constexpr int kMaxSteps = 300;

constexpr std::array<uint32_t, 17> kCommands = {BC_TRANSACTION,
                                                BC_TRANSACTION,
                                                BC_REPLY,
                                                BC_REPLY,
                                                BC_FREE_BUFFER,
                                                BC_FREE_BUFFER,
                                                BC_INCREFS,
                                                BC_ACQUIRE,
                                                BC_RELEASE,
                                                BC_DECREFS,
                                                BC_INCREFS_DONE,
                                                BC_ACQUIRE_DONE,
                                                BC_ENTER_LOOPER,
                                                BC_REGISTER_LOOPER,
                                                BC_REQUEST_DEATH_NOTIFICATION,
                                                BC_DEAD_BINDER_DONE,
                                                BC_CLEAR_DEATH_NOTIFICATION};

constexpr std::array<uint32_t, 6> kTypes = {BINDER_TYPE_BINDER, BINDER_TYPE_WEAK_BINDER,
                                            BINDER_TYPE_HANDLE, BINDER_TYPE_WEAK_HANDLE,
                                            BINDER_TYPE_FD,     BINDER_TYPE_PTR};

[[noreturn]] void fail(const std::string& problem) {
    fprintf(stderr, "%s\n", problem.c_str());
    abort();
}

struct Peer {
    unique_fd socket;
    std::array<unique_fd, kThreads> threads;
    std::array<bool, kThreads> waits = {};
};

class Fuzz {
  public:
    explicit Fuzz(Bytes data) : mInput(data) {}

    void run() {
        for (int i = 0; i < kMaxSteps && !mInput.empty(); ++i) {
            act(mInput.within<size_t>(0, kProcesses - 1));
            settle();
        }
        mPeers = {};
        settle();
        if (stateOf(mHub).find(
                    "\"totals\":{\"processes\":0,\"threads\":0,\"nodes\":0,\"handles\":0,"
                    "\"death_notices\":0,\"transactions\":0,\"buffers\":0,\"bytes\":0}") ==
            std::string::npos) {
            fail("the hub still holds something: " + stateOf(mHub));
        }
    }

  private:
    void act(size_t index) {
        Peer& peer = mPeers[index];
        const size_t thread = mInput.within<size_t>(0, kThreads - 1);
        const int action = mInput.within(0, 15);
        if (peer.socket.get() < 0) {
            start(index);
        } else if (action == 0) {
            mPeers[index] = {};
        } else if (action == 1) {
            peer.threads[thread].reset();
        } else if (action == 2) {
            sendGarbage(mInput.flag() ? peer.threads[thread].get() : peer.socket.get());
        } else if (action == 3) {
            becomeManager(peer);
        } else if (peer.threads[thread].get() < 0) {
            openThread(peer, thread);
        } else {
            exchange(peer, thread);
        }
    }

    void start(size_t index) {
        std::array<int, 2> ends = {-1, -1};
        if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0) {
            fail("no socket pair");
        }
        mPeers[index].socket.reset(ends[0]);
        mHub.attach(unique_fd(ends[1]), static_cast<pid_t>(100 + index), 10000);
        request(mPeers[index], kHello, kProtocolVersion);
        request(mPeers[index], kSetMaxThreads, 1);
        openThread(mPeers[index], 0);
        openThread(mPeers[index], 1);
    }

    void request(Peer& peer, Kind kind, uint32_t value, std::span<const uint8_t> payload = {}) {
        OutMessage message;
        message.header.kind = kind;
        message.header.value = value;
        message.payload = payload;
        sendMessage(peer.socket.get(), message, false);
        mHub.step(0);
        mReceiver.receive(peer.socket.get(), false, kMaxPayload, &mAnswer);
    }

    void openThread(Peer& peer, size_t thread) {
        request(peer, kNewThread, 0);
        if (!mAnswer.descriptors.empty()) {
            peer.threads[thread] = std::move(mAnswer.descriptors.front());
            peer.waits[thread] = false;
        } else {
            peer = {};  // what was sent was garbage
        }
    }

    void becomeManager(Peer& peer) {
        const flat_binder_object object = anyObject();
        request(peer, kBecomeContextManager, 0,
                {reinterpret_cast<const uint8_t*>(&object), sizeof(object)});
    }

    void sendGarbage(int socket) {
        const Bytes bytes = mInput.take(mInput.within<size_t>(0, 100));
        send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    }

    void exchange(Peer& peer, size_t thread) {
        mBytes.clear();
        mPayload.clear();
        const int count = mInput.within(0, 3);
        for (int i = 0; i < count; ++i) {
            addCommand(mInput.oneOf(kCommands));
        }
        const bool wants = mInput.flag() && !peer.waits[thread];
        const std::array descriptors = {STDERR_FILENO};
        OutMessage message;
        message.header.kind = kExchange;
        message.header.flags = wants ? uint32_t{kWantsReturns} : 0;
        message.commands = mBytes;
        message.payload = mPayload;
        message.descriptors = descriptors;
        peer.waits[thread] = peer.waits[thread] || wants;
        sendMessage(peer.threads[thread].get(), message, false);
    }

    void addCommand(uint32_t command) {
        append(command);
        if (command == BC_TRANSACTION || command == BC_REPLY) {
            append(anyTransfer());
        } else if (command == BC_FREE_BUFFER) {
            append(mInput.within<uint64_t>(1, kMaxBufferId));
        } else if (_IOC_SIZE(command) == sizeof(uint32_t)) {
            append(name());
        } else if (_IOC_SIZE(command) == sizeof(binder_handle_cookie)) {
            append(binder_handle_cookie{name(), name()});
        } else if (_IOC_SIZE(command) == sizeof(binder_ptr_cookie)) {
            const uint32_t node = name();
            append(binder_ptr_cookie{node, node});
        } else if (_IOC_SIZE(command) == sizeof(uint64_t)) {
            append(uint64_t{name()});
        }
    }

    binder_transaction_data anyTransfer() {
        binder_transaction_data data = {};
        data.target.handle = name();
        data.flags = mInput.within<uint32_t>(0, 0x1f);
        data.data.ptr.buffer = mPayload.size();
        const size_t objects = mInput.within<size_t>(0, kMaxObjects);
        for (size_t i = 0; i < objects; ++i) {
            appendTo(mPayload, anyObject());
        }
        data.data_size = mPayload.size() - data.data.ptr.buffer;
        data.data.ptr.offsets = mPayload.size();
        for (size_t i = 0; i < objects; ++i) {
            const uint64_t skew = mInput.within(0, 31) == 0 ? anyNumber() : 0;
            appendTo(mPayload, i * sizeof(flat_binder_object) + skew);
        }
        data.offsets_size = mPayload.size() - data.data.ptr.offsets;
        if (mInput.within(0, 31) == 0) {
            data.data_size = anyNumber();
            data.data.ptr.offsets = anyNumber();
        }
        return data;
    }

    flat_binder_object anyObject() {
        flat_binder_object object = {};
        object.hdr.type = mInput.oneOf(kTypes);
        object.flags = mInput.flag() ? uint32_t{FLAT_BINDER_FLAG_ACCEPTS_FDS} : 0;
        object.binder = name();
        object.cookie = object.binder;
        if (object.hdr.type == BINDER_TYPE_FD) {
            object.binder = mInput.within(0, 7) == 0 ? 1 : 0;
        }
        return object;
    }

    uint32_t name() { return mInput.within<uint32_t>(0, kMaxName); }
    uint64_t anyNumber() { return mInput.number<uint64_t>(); }

    template <typename T>
    static void appendTo(std::vector<uint8_t>& target, const T& value) {
        const auto* bytes = reinterpret_cast<const uint8_t*>(&value);
        target.insert(target.end(), bytes, bytes + sizeof(value));
    }

    template <typename T>
    void append(const T& value) {
        appendTo(mBytes, value);
    }

    /** Lets the hub do all there is to do, and takes what it sends. */
    void settle() {
        mHub.step(0);
        mHub.step(0);
        const std::string problem = checkInvariants(mHub);
        if (!problem.empty()) {
            fail(problem);
        }
        for (Peer& peer : mPeers) {
            for (size_t i = 0; i < kThreads; ++i) {
                takeReturns(peer, i);
            }
        }
    }

    void takeReturns(Peer& peer, size_t thread) {
        const int socket = peer.threads[thread].get();
        if (socket < 0) {
            return;
        }
        const int status = mReceiver.receive(socket, false, kMaxPayload, &mAnswer);
        if (status == 1) {
            if (!peer.waits[thread]) {
                fail("returns that nobody asked for");
            }
            peer.waits[thread] = false;
        } else if (status != -EAGAIN) {
            peer = {};  // what was sent was garbage
        }
    }

    Input mInput;
    Hub mHub;
    std::array<Peer, kProcesses> mPeers;
    Receiver mReceiver;
    InMessage mAnswer;
    std::vector<uint8_t> mBytes;
    std::vector<uint8_t> mPayload;
};

}  // namespace

}  // namespace binderhub

void fuzzHub(Bytes data) {
    binderhub::Fuzz(data).run();
}
