#pragma once

#include <android-base/unique_fd.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "HubProtocol.h"

/** Messages of HubProtocol.h over sockets; the same code on the hub's side and on the process's. */
namespace binderhub {

/** One message on its way out. The bytes are the caller's; descriptors stay the caller's as well.
 */
struct OutMessage {
    HubHeader header = {};  ///< sizes and kPayloadInFile are filled in when it is sent
    std::span<const uint8_t> commands;
    std::span<const uint8_t> payload;
    std::span<const int> descriptors;
};

/** One message that came in. The spans point into the Receiver, or into `filePayload`. */
struct InMessage {
    HubHeader header = {};
    std::span<const uint8_t> commands;
    std::span<const uint8_t> payload;
    std::vector<android::base::unique_fd> descriptors;  ///< without the payload's file
    std::vector<uint8_t> filePayload;                   ///< a payload that came in a file
    /** This process had no room for the descriptors: none is there, nor a payload in a file. */
    bool descriptorsLost = false;
};

/**
 * Sends one datagram; a payload that would make it longer than kMaxDatagram goes in a file. Returns
 * 0 or a negative errno: -EAGAIN when `wait` is false and the peer's queue is full, -EPIPE when the
 * peer is gone (no SIGPIPE), -EINVAL for more than kMaxDescriptors descriptors or a too long text.
 */
int sendMessage(int socket, const OutMessage& message, bool wait);

/** Receives messages into memory that it keeps. One thread at a time. */
class Receiver {
  public:
    Receiver();

    /**
     * Takes the next datagram. Returns 1, or 0 at the end of the connection, or a negative errno:
     * -EAGAIN when nothing is there and `wait` is false, -EINTR, -EPROTO for one that breaks the
     * framing: sizes that do not add up, missing or surplus parts, a payload longer than
     * `payloadLimit`, a payload file of another size. All descriptors of such a one are closed.
     * What `message` held before is dropped, its spans are valid until the next call.
     */
    int receive(int socket, bool wait, size_t payloadLimit, InMessage* message);

  private:
    std::unique_ptr<uint8_t[]> mBytes;  // kMaxDatagram
};

/** Where a hub listens, and is looked for, unless it is told: dev/binderhub below KELVO_ROOT. */
std::string defaultSocket();

/** Connects to the hub's socket at this path: -1 and errno when it fails. Paths may be long. */
android::base::unique_fd connectTo(const std::string& path);

/**
 * A bound, listening socket at this path, of which a stale one is removed first; -1 and errno when
 * that fails, EADDRINUSE when someone answers there.
 */
android::base::unique_fd listenAt(const std::string& path);

}  // namespace binderhub
