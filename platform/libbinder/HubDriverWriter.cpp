#include "HubDriverWriter.h"

#include <cerrno>
#include <cstring>

#include "HubDriverBuffer.h"

namespace android {

namespace {

using binderhub::kBufferSpace;

/** Commands of a message; so many that a usual payload still goes with them in one datagram. */
constexpr size_t kMaxCommands = 16 * 1024;

constexpr size_t alignToEight(size_t size) {
    return (size + 7) & ~size_t{7};
}

const uint8_t* pointer(binder_uintptr_t address) {
    // The driver's format holds pointers as numbers.
    return reinterpret_cast<const uint8_t*>(  // NOLINT(performance-no-int-to-ptr)
            static_cast<uintptr_t>(address));
}

bool isCall(uint32_t command) {
    return command == BC_TRANSACTION || command == BC_REPLY;
}

bool isCommand(uint32_t command) {
    switch (command) {
        case BC_TRANSACTION:
        case BC_REPLY:
        case BC_FREE_BUFFER:
        case BC_INCREFS:
        case BC_ACQUIRE:
        case BC_RELEASE:
        case BC_DECREFS:
        case BC_INCREFS_DONE:
        case BC_ACQUIRE_DONE:
        case BC_REGISTER_LOOPER:
        case BC_ENTER_LOOPER:
        case BC_EXIT_LOOPER:
        case BC_REQUEST_DEATH_NOTIFICATION:
        case BC_CLEAR_DEATH_NOTIFICATION:
        case BC_DEAD_BINDER_DONE:
            return true;
        default:
            return false;
    }
}

/** Whether any buffer could take it; the single sizes first, as their sum may overflow. */
bool fitsBuffer(const binder_transaction_data& call) {
    return call.data_size <= kBufferSpace && call.offsets_size <= kBufferSpace &&
           call.offsets_size % sizeof(binder_size_t) == 0 &&
           alignToEight(call.data_size) + call.offsets_size <= kBufferSpace;
}

}  // namespace

void HubDriverWriter::start() {
    mCommands.clear();
    mPayload.clear();
    mDescriptors.clear();
    mCallPosition = kNoCall;
}

size_t HubDriverWriter::take(std::span<const uint8_t> commands, status_t* status) {
    start();
    *status = OK;
    size_t taken = 0;
    while (taken < commands.size() && mCommands.size() < kMaxCommands) {
        const std::span<const uint8_t> rest = commands.subspan(taken);
        uint32_t command = 0;
        if (rest.size() < sizeof(command)) {
            *status = -EINVAL;
            break;
        }
        memcpy(&command, rest.data(), sizeof(command));
        const size_t size = sizeof(command) + _IOC_SIZE(command);
        if (!isCommand(command) || rest.size() < size) {
            *status = -EINVAL;
            break;
        }
        if (!takeCommand(command, rest.data() + sizeof(command))) {
            break;
        }
        taken += size;
    }
    return taken;
}

bool HubDriverWriter::takeCommand(uint32_t command, const uint8_t* argument) {
    if (command == BC_FREE_BUFFER) {
        takeFreeBuffer(argument);
    } else if (!isCall(command)) {
        append(&command, sizeof(command));
        append(argument, _IOC_SIZE(command));
    } else if (mCallPosition == kNoCall) {
        takeCall(command, argument);
    } else {
        return false;  // each call has a message of its own for its data
    }
    return true;
}

void HubDriverWriter::append(const void* bytes, size_t size) {
    const auto* first = static_cast<const uint8_t*>(bytes);
    mCommands.insert(mCommands.end(), first, first + size);
}

void HubDriverWriter::takeFreeBuffer(const uint8_t* argument) {
    binder_uintptr_t address = 0;
    memcpy(&address, argument, sizeof(address));
    uint64_t bufferId = 0;
    if (freeHubBuffer(address, &bufferId)) {
        const uint32_t command = BC_FREE_BUFFER;
        append(&command, sizeof(command));
        append(&bufferId, sizeof(bufferId));
    }
}

void HubDriverWriter::takeCall(uint32_t command, const uint8_t* argument) {
    binder_transaction_data call;
    memcpy(&call, argument, sizeof(call));
    append(&command, sizeof(command));
    mCallPosition = mCommands.size();
    append(&call, sizeof(call));
    if (!fitsBuffer(call)) {
        refuse();
        return;
    }
    const size_t dataSize = call.data_size;
    copyData(&call);
    memcpy(mCommands.data() + mCallPosition, &call, sizeof(call));
    if (!takeDescriptors(dataSize, call.data.ptr.offsets)) {
        refuse();
    }
}

void HubDriverWriter::copyData(binder_transaction_data* call) {
    const uint8_t* data = pointer(call->data.ptr.buffer);
    const uint8_t* offsets = pointer(call->data.ptr.offsets);
    mPayload.insert(mPayload.end(), data, data + call->data_size);
    mPayload.resize(alignToEight(mPayload.size()));
    call->data.ptr.buffer = 0;
    call->data.ptr.offsets = mPayload.size();
    mPayload.insert(mPayload.end(), offsets, offsets + call->offsets_size);
}

/** Whether all objects are within the data and their descriptors are not too many. */
bool HubDriverWriter::takeDescriptors(size_t dataSize, size_t offsetsStart) {
    for (size_t at = offsetsStart; at < mPayload.size(); at += sizeof(binder_size_t)) {
        binder_size_t position = 0;
        memcpy(&position, mPayload.data() + at, sizeof(position));
        binder_fd_object object;
        if (dataSize < sizeof(object) || position > dataSize - sizeof(object)) {
            return false;
        }
        memcpy(&object, mPayload.data() + position, sizeof(object));
        if (object.hdr.type != BINDER_TYPE_FD) {
            continue;
        }
        if (mDescriptors.size() == binderhub::kMaxDescriptors) {
            return false;
        }
        mDescriptors.push_back(static_cast<int>(object.fd));
        object.fd = static_cast<uint32_t>(mDescriptors.size() - 1);
        memcpy(mPayload.data() + position, &object, sizeof(object));
    }
    return true;
}

void HubDriverWriter::refuse() {
    binder_transaction_data call;
    memcpy(&call, mCommands.data() + mCallPosition, sizeof(call));
    call.data_size = kBufferSpace + 1;
    call.offsets_size = 0;
    call.data.ptr.buffer = 0;
    call.data.ptr.offsets = 0;
    memcpy(mCommands.data() + mCallPosition, &call, sizeof(call));
    mPayload.clear();
    mDescriptors.clear();
}

binderhub::OutMessage HubDriverWriter::message(uint32_t flags) const {
    binderhub::OutMessage message;
    message.header.kind = binderhub::kExchange;
    message.header.flags = flags;
    message.commands = mCommands;
    message.payload = mPayload;
    message.descriptors = mDescriptors;
    return message;
}

void HubDriverWriter::forget() {
    if (mPayload.capacity() > binderhub::kMaxDatagram) {
        mPayload = {};
    }
}

}  // namespace android
