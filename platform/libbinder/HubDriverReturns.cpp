#include "HubDriverReturns.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "HubDriverBuffer.h"

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

/** Objects lie in the data, in order and apart; the hub sees to that for what senders wrote. */
status_t Delivery::fixDescriptors(uint8_t* data, size_t size, std::span<const uint8_t> offsets) {
    size_t end = 0;
    for (size_t at = 0; at < offsets.size(); at += sizeof(binder_size_t)) {
        binder_size_t position = 0;
        memcpy(&position, offsets.data() + at, sizeof(position));
        if (position < end || size < sizeof(flat_binder_object) ||
            position > size - sizeof(flat_binder_object) || !fixDescriptor(data + position)) {
            return -EPROTO;
        }
        end = position + sizeof(flat_binder_object);
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

/** Walks over returns that lie in the read buffer and makes them those of this process. */
class Returns {
  public:
    Returns(InMessage* message, uint8_t* bytes)
          : mMessage(message), mBytes(bytes), mSize(message->commands.size()) {}

    status_t fix(bool* unread);
    size_t size() const { return mSize; }

  private:
    status_t fixNext(size_t* position, bool* unread);
    status_t fixCall(size_t position);
    void failReply(size_t position);

    InMessage* const mMessage;
    uint8_t* const mBytes;
    size_t mSize;
    bool mHasCall = false;
};

status_t Returns::fix(bool* unread) {
    *unread = false;
    status_t status = OK;
    for (size_t position = 0; status == OK && position < mSize;) {
        status = fixNext(&position, unread);
    }
    return status;
}

status_t Returns::fixNext(size_t* position, bool* unread) {
    uint32_t code = 0;
    if (mSize - *position < sizeof(code)) {
        return -EPROTO;
    }
    memcpy(&code, mBytes + *position, sizeof(code));
    const size_t argument = *position + sizeof(code);
    if (_IOC_TYPE(code) != 'r' || _IOC_SIZE(code) > mSize - argument) {
        return -EPROTO;
    }
    status_t status = OK;
    if (code == BR_REPLY && mMessage->descriptorsLost) {
        failReply(*position);
        *unread = true;
        code = BR_FAILED_REPLY;
    } else if (code == BR_TRANSACTION || code == BR_REPLY) {
        status = fixCall(argument);
    }
    *position = argument + _IOC_SIZE(code);
    return status;
}

status_t Returns::fixCall(size_t position) {
    if (mHasCall) {
        return -EPROTO;
    }
    mHasCall = true;
    binder_transaction_data call;
    memcpy(&call, mBytes + position, sizeof(call));
    const status_t status = Delivery(mMessage).deliver(&call);
    memcpy(mBytes + position, &call, sizeof(call));
    return status;
}

/** As the kernel does for a reply whose descriptors have no room in the process. */
void Returns::failReply(size_t position) {
    const uint32_t code = BR_FAILED_REPLY;
    const size_t end = position + sizeof(code) + sizeof(binder_transaction_data);
    memcpy(mBytes + position, &code, sizeof(code));
    memmove(mBytes + position + sizeof(code), mBytes + end, mSize - end);
    mSize -= sizeof(binder_transaction_data);
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
    memcpy(bytes, message->commands.data(), message->commands.size());
    Returns returns(message, bytes);
    const status_t status = returns.fix(unread);
    if (status == OK) {
        exchange->read_consumed += returns.size();
    }
    return status;
}

}  // namespace android
