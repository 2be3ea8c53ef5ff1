#include "HubDriverReturns.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "CommandReader.h"
#include "HubDriverBuffer.h"
#include "ObjectPositions.h"

namespace android {

namespace {

using binderhub::InMessage;

bool contains(std::span<const uint8_t> payload, uint64_t start, uint64_t size) {
    return start % sizeof(binder_size_t) == 0 && start <= payload.size() &&
           size <= payload.size() - start;
}

/** The data of one transaction on its way from a message into memory of its own. */
class Delivery {
  public:
    explicit Delivery(InMessage* message) : mMessage(message) {}

    status_t deliver(binder_transaction_data* call);

  private:
    status_t fixDescriptors(uint8_t* data, size_t size, std::span<const uint8_t> offsets);
    bool fixDescriptor(uint8_t* place);
    void giveDescriptors();

    InMessage* const mMessage;
    size_t mDescriptorsUsed = 0;
};

status_t Delivery::deliver(binder_transaction_data* call) {
    if (mMessage->descriptorsLost && mMessage->payload.empty()) {
        call->data_size = 0;
        call->offsets_size = 0;
        call->data.ptr = {};
    }
    const auto [start, offsetsStart] = call->data.ptr;
    if (!contains(mMessage->payload, start, call->data_size) ||
        !contains(mMessage->payload, offsetsStart, call->offsets_size) ||
        call->offsets_size % sizeof(binder_size_t) != 0) {
        return -EPROTO;
    }
    const size_t dataSpace = (call->data_size + 7) & ~uint64_t{7};
    uint8_t* buffer = newHubBuffer(mMessage->header.bufferId, dataSpace + call->offsets_size);
    if (buffer == nullptr) {
        return -ENOMEM;
    }
    const std::span<const uint8_t> offsets =
            mMessage->payload.subspan(offsetsStart, call->offsets_size);
    memcpy(buffer, mMessage->payload.data() + start, call->data_size);
    memcpy(buffer + dataSpace, offsets.data(), offsets.size());
    call->data.ptr.buffer = reinterpret_cast<uintptr_t>(buffer);
    call->data.ptr.offsets = reinterpret_cast<uintptr_t>(buffer + dataSpace);
    const status_t status = fixDescriptors(buffer, call->data_size, offsets);
    if (status != OK) {
        uint64_t bufferId = 0;
        freeHubBuffer(call->data.ptr.buffer, &bufferId);
        return status;
    }
    giveDescriptors();
    return OK;
}

/** The hub sees to it that objects are where they may be. */
status_t Delivery::fixDescriptors(uint8_t* data, size_t size, std::span<const uint8_t> offsets) {
    binderhub::ObjectPositions positions(size, offsets);
    while (!positions.atEnd()) {
        size_t position = 0;
        if (!positions.next(&position) || !fixDescriptor(data + position)) {
            return -EPROTO;
        }
    }
    return OK;
}

/** The hub numbers them in the order of the objects, so that each has one owner. */
bool Delivery::fixDescriptor(uint8_t* place) {
    binder_fd_object object;
    memcpy(&object, place, sizeof(object));
    if (object.hdr.type != BINDER_TYPE_FD) {
        return true;
    }
    int fd = -1;
    if (!mMessage->descriptorsLost) {
        if (object.fd != mDescriptorsUsed || object.fd >= mMessage->descriptors.size()) {
            return false;
        }
        fd = mMessage->descriptors[mDescriptorsUsed++].get();
    }
    object.pad_binder = 0;
    object.fd = static_cast<uint32_t>(fd);
    memcpy(place, &object, sizeof(object));
    return true;
}

void Delivery::giveDescriptors() {
    for (size_t i = 0; i < mDescriptorsUsed; ++i) {
        [[maybe_unused]] const int given = mMessage->descriptors[i].release();
    }
}

/** Puts the hub's returns into the read buffer and makes them those of this process. */
class Returns {
  public:
    Returns(InMessage* message, uint8_t* out) : mMessage(message), mOut(out) {}

    status_t take(bool* unread);
    size_t size() const { return mSize; }

  private:
    status_t takeNext(const binderhub::Command& next, bool* unread);
    status_t takeCall(const binderhub::Command& call);
    void put(const void* bytes, size_t size);

    InMessage* const mMessage;
    uint8_t* const mOut;
    size_t mSize = 0;
    bool mHasCall = false;
};

status_t Returns::take(bool* unread) {
    *unread = false;
    binderhub::CommandReader reader(mMessage->commands, binderhub::isReturn);
    binderhub::Command next;
    status_t status = OK;
    while (status == OK && !reader.atEnd()) {
        status = reader.next(&next) ? takeNext(next, unread) : -EPROTO;
    }
    return status;
}

status_t Returns::takeNext(const binderhub::Command& next, bool* unread) {
    if (next.code == BR_REPLY && mMessage->descriptorsLost) {
        // As the kernel does for a reply whose descriptors have no room in the process.
        const uint32_t failed = BR_FAILED_REPLY;
        put(&failed, sizeof(failed));
        *unread = true;
        return OK;
    }
    put(&next.code, sizeof(next.code));
    if (next.code == BR_TRANSACTION || next.code == BR_REPLY) {
        return takeCall(next);
    }
    put(next.argument.data(), next.argument.size());
    return OK;
}

status_t Returns::takeCall(const binderhub::Command& call) {
    if (mHasCall) {
        return -EPROTO;
    }
    mHasCall = true;
    auto data = call.as<binder_transaction_data>();
    const status_t status = Delivery(mMessage).deliver(&data);
    put(&data, sizeof(data));
    return status;
}

void Returns::put(const void* bytes, size_t size) {
    memcpy(mOut + mSize, bytes, size);
    mSize += size;
}

}  // namespace

status_t deliverReturns(InMessage* message, binder_write_read* exchange, bool* unread) {
    const size_t space = exchange->read_size - exchange->read_consumed;
    if (message->commands.size() > space) {
        return -EPROTO;
    }
    // The driver's format holds pointers as numbers.
    auto* bytes = reinterpret_cast<uint8_t*>(  // NOLINT(performance-no-int-to-ptr)
            static_cast<uintptr_t>(exchange->read_buffer + exchange->read_consumed));
    Returns returns(message, bytes);
    const status_t status = returns.take(unread);
    if (status == OK) {
        exchange->read_consumed += returns.size();
    }
    return status;
}

}  // namespace android
