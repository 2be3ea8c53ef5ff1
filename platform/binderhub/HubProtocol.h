#pragma once

#include <cstddef>
#include <cstdint>

/**
 * What goes over the hub's socket. Sockets are SOCK_SEQPACKET: one message is one datagram, a
 * HubHeader followed by `commandSize` bytes of commands and `payloadSize` bytes of payload.
 *
 * A process connects once: that is its *process connection*, and the credentials that the kernel
 * gives for it (SO_PEERCRED) are the process's identity. It sends kHello first. Each of its threads
 * that uses binder asks for a *thread connection* with kNewThread; the answer carries one end of a
 * new socket pair. Closing a thread connection ends the thread's part, closing the process
 * connection ends everything of the process.
 *
 * On the process connection each request gets one answer of kind kAnswer, whose `status` is 0 or a
 * negative errno. On a thread connection the process sends kExchange: BC_ commands and, with
 * kWantsReturns, the request for returns. The hub answers that request with one kExchange of BR_
 * returns once it has any, never more than one for each request, and a second request before the
 * answer is an error. A datagram that breaks a rule costs the sender its process connection.
 *
 * Commands are those of linux/android/binder.h with these differences, all in what a pointer means:
 * - BC_TRANSACTION, BC_REPLY, BR_TRANSACTION, BR_REPLY: data.ptr.buffer and data.ptr.offsets are
 *   offsets into the payload, multiples of 8. The payload is inline, or, with kPayloadInFile, the
 *   whole content of a file (memfd) that is the message's first descriptor.
 * - The `handle` of a BINDER_TYPE_FD object in a message is an index into the message's
 * descriptors, the payload's file not counted.
 * - A message of the hub has at most one transaction or reply; `bufferId` names its buffer, and
 *   BC_FREE_BUFFER is given that instead of an address.
 */
namespace binderhub {

constexpr uint32_t kProtocolVersion = 2;

enum Kind : uint32_t {
    kHello = 1,                 ///< process connection; `value`: kProtocolVersion
    kNewThread = 2,             ///< process connection; the answer has one descriptor
    kSetMaxThreads = 3,         ///< process connection; `value`: how many
    kBecomeContextManager = 4,  ///< process connection; payload: one flat_binder_object
    kState = 5,                 ///< process connection; the answer's payload is JSON
    kAnswer = 6,                ///< hub to process connection
    kExchange = 7,              ///< thread connection, both ways
    kNodeInfo =
            8,  ///< process connection; `value`: a handle; answered with binder_node_info_for_ref
};

enum Flag : uint32_t {
    kWantsReturns = 1 << 0,
    kPayloadInFile = 1 << 1,
};

struct HubHeader {
    uint32_t kind;
    uint32_t flags;
    uint32_t commandSize;
    uint32_t payloadSize;  ///< also when the payload is in a file
    int32_t status;        ///< of an answer
    uint32_t value;        ///< of a request
    uint64_t bufferId;     ///< of the transaction or reply that the hub sends
};

/** Longest datagram either side sends; a payload that makes it longer goes in a file. */
constexpr size_t kMaxDatagram = 64 * 1024;

/** Longest sequence of BR_ returns in one message: what BinderDriver::kReadBytes takes. */
constexpr size_t kMaxReturns = 256;

/** Most descriptors in a message, a payload file not counted (the kernel's SCM_MAX_FD less one). */
constexpr size_t kMaxDescriptors = 252;

/** Buffer space of one process, as much as libbinder maps of the kernel's driver (bytes). */
constexpr size_t kBufferSpace = 1024 * 1024 - 2 * 4096;

/** The part of it that one-way transactions may take. */
constexpr size_t kAsyncSpace = kBufferSpace / 2;

}  // namespace binderhub
