#pragma once

#include <android-base/unique_fd.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "HubProtocol.h"
#include "HubSocket.h"

namespace binderhub {

/**
 * A process's connection to the hub, on which it asks and is answered. While it stands, this
 * process exists for the hub. One thread at a time, but for disconnect().
 */
class HubClient {
  public:
    /** Connects and agrees on the version; null, and why in `error`, when that fails. */
    static std::unique_ptr<HubClient> open(const std::string& path, std::string* error);

    /**
     * Asks, and waits for the answer, which goes to `answer`. Returns the status that the hub
     * answered, or -EBADF when the hub is gone.
     */
    int ask(Kind kind, uint32_t value, std::span<const uint8_t> payload, InMessage* answer);

    /** Ends the connection for good; whoever waits in ask() gets -EBADF. Thread-safe. */
    void disconnect();

    /** Whether the hub is gone, or disconnect() was called. Thread-safe. */
    bool gone() const { return mGone.load(std::memory_order_acquire); }

  private:
    explicit HubClient(android::base::unique_fd socket) : mSocket(std::move(socket)) {}

    bool exchange(const OutMessage& question, InMessage* answer);

    const android::base::unique_fd mSocket;
    std::atomic<bool> mGone = false;
    Receiver mReceiver;
};

/**
 * What the hub at this path holds, as JSON. Returns 0 or a negative errno, -EPERM when the caller
 * may not ask; then `error` says what is wrong.
 */
int hubState(const std::string& path, std::string* json, std::string* error);

}  // namespace binderhub
