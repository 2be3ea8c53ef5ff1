#pragma once

#include <CommandReader.h>
#include <HubSocket.h>
#include <utils/Errors.h>

#include <span>
#include <vector>

#include "BinderProtocol.h"

namespace android {

/**
 * Makes messages for the hub of BC_ commands: data that the commands point at goes into the
 * payload, descriptors among it beside the message, addresses of buffers become the hub's numbers
 * for them. What the commands point at stays as it is, but for buffers that BC_FREE_BUFFER names:
 * they are freed at once. Keeps its memory from message to message. One thread at a time.
 */
class HubDriverWriter {
  public:
    /**
     * Starts a new message with as many of these commands as fit. Returns how many bytes it took;
     * `status` is -EINVAL when what follows them is no command or is cut, else OK.
     */
    size_t take(std::span<const uint8_t> commands, status_t* status);

    bool empty() const { return mCommands.empty(); }

    /** Whether the message has a transaction or reply that takes something along. */
    bool hasPayload() const { return !mPayload.empty(); }

    /**
     * Takes the data off the transaction or reply, and states a size that the hub refuses: sender
     * and caller are told as they are for one that is too long for every buffer.
     */
    void refuse();

    /** The message with these flags; valid until take(), refuse() or forget(). */
    binderhub::OutMessage message(uint32_t flags) const;

    /** Gives memory back that an uncommonly long message took. */
    void forget();

  private:
    void start();
    void append(const void* bytes, size_t size);
    bool takeCommand(const binderhub::Command& command);
    void takeFreeBuffer(binder_uintptr_t address);
    void takeCall(const binderhub::Command& command);
    void copyData(binder_transaction_data* call);
    bool takeDescriptors(size_t dataSize, size_t offsetsStart);

    std::vector<uint8_t> mCommands;
    std::vector<uint8_t> mPayload;
    std::vector<int> mDescriptors;
    size_t mCallPosition = kNoCall;  // of its binder_transaction_data in mCommands

    static constexpr size_t kNoCall = SIZE_MAX;
};

}  // namespace android
