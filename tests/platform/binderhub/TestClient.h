#pragma once

#include <android-base/unique_fd.h>
#include <linux/android/binder.h>

#include <string>
#include <vector>

#include "Hub.h"
#include "HubSocket.h"
#include "Limits.h"

namespace binderhub {

using Objects = std::vector<flat_binder_object>;

inline flat_binder_object object(uint32_t type, uint64_t name, uint64_t cookie = 0,
                                 uint32_t flags = 0) {
    return {.hdr = {type}, .flags = flags, .binder = name, .cookie = cookie};
}

/** Commands of one message, and what goes with them. */
struct Batch {
    template <typename... Parameters>
    Batch& add(uint32_t command, Parameters... parameters) {
        append(command);
        (append(parameters), ...);
        return *this;
    }

    /** BC_TRANSACTION or BC_REPLY with these objects one behind the other. */
    Batch& transfer(uint32_t command, uint32_t handle = 0, const Objects& objects = {},
                    uint32_t flags = 0);

    template <typename T>
    void append(const T& value) {
        const auto* bytes = reinterpret_cast<const uint8_t*>(&value);
        commands.insert(commands.end(), bytes, bytes + sizeof(value));
    }

    std::vector<uint8_t> commands;
    std::vector<uint8_t> payload;
    std::vector<int> descriptors;
};

/** A thread of a client, whose hub is stepped by hand. */
class TestThread {
  public:
    TestThread(Hub& hub, android::base::unique_fd end) : socket(std::move(end)), mHub(hub) {}

    /** Asks for returns as well, unless it has done so and they have not come. */
    void send(const Batch& batch, bool wantsReturns = true);
    void sendRaw(const std::vector<uint8_t>& datagram);

    /** Names of the returns that came, "" when none came, "closed". */
    std::string read();

    std::string exchange(const Batch& batch) {
        send(batch);
        return read();
    }

    /** Gives back the last buffer. */
    std::string free() { return exchange(Batch().add(BC_FREE_BUFFER, bufferId)); }

    uint64_t bufferId = 0;
    binder_transaction_data data = {};  ///< of the last transaction or reply
    Objects objects;                    ///< likewise
    std::vector<android::base::unique_fd> descriptors;
    android::base::unique_fd socket;

  private:
    Hub& mHub;
    Receiver mReceiver;
    bool mWaits = false;
};

/** A client process. */
class TestProcess {
  public:
    TestProcess(Hub& hub, pid_t pid, uid_t uid = 10000);

    /** Asks on the process connection: the status, or -EPIPE when it is closed. */
    int ask(Kind kind, uint32_t value, std::span<const uint8_t> payload = {});

    TestThread newThread();
    TestThread newLooper();
    int becomeManager();

    android::base::unique_fd socket;
    InMessage answer;

  private:
    Hub& mHub;
    Receiver mReceiver;
};

}  // namespace binderhub
