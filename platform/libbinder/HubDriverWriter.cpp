#include "HubDriverWriter.h"

#include <cerrno>
#include <cstring>

#include "HubDriverBuffer.h"
#include "ObjectPositions.h"

namespace android {

namespace {

using binderhub::Command;
using binderhub::CommandReader;
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
    CommandReader reader(commands, binderhub::isCommand);
    Command command;
    size_t taken = 0;
    while (!reader.atEnd() && mCommands.size() < kMaxCommands) {
        if (!reader.next(&command)) {
            *status = -EINVAL;
            break;
        }
        if (!takeCommand(command)) {
            break;
        }
        taken += command.size();
    }
    return taken;
}

bool HubDriverWriter::takeCommand(const Command& command) {
    if (command.code == BC_FREE_BUFFER) {
        takeFreeBuffer(command.as<binder_uintptr_t>());
    } else if (!isCall(command.code)) {
        append(&command.code, sizeof(command.code));
        append(command.argument.data(), command.argument.size());
    } else if (mCallPosition == kNoCall) {
        takeCall(command);
    } else {
        return false;  // each call has a message of its own for its data
    }
    return true;
}

void HubDriverWriter::append(const void* bytes, size_t size) {
    const auto* first = static_cast<const uint8_t*>(bytes);
    mCommands.insert(mCommands.end(), first, first + size);
}

void HubDriverWriter::takeFreeBuffer(binder_uintptr_t address) {
    uint64_t bufferId = 0;
    if (freeHubBuffer(address, &bufferId)) {
        const uint32_t command = BC_FREE_BUFFER;
        append(&command, sizeof(command));
        append(&bufferId, sizeof(bufferId));
    }
}

void HubDriverWriter::takeCall(const Command& command) {
    auto call = command.as<binder_transaction_data>();
    append(&command.code, sizeof(command.code));
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

/** Whether all objects are where they may be and their descriptors are not too many. */
bool HubDriverWriter::takeDescriptors(size_t dataSize, size_t offsetsStart) {
    const std::span<uint8_t> payload = mPayload;
    binderhub::ObjectPositions positions(dataSize, payload.subspan(offsetsStart));
    while (!positions.atEnd()) {
        size_t position = 0;
        if (!positions.next(&position)) {
            return false;
        }
        binder_fd_object object;
        memcpy(&object, payload.data() + position, sizeof(object));
        if (object.hdr.type != BINDER_TYPE_FD) {
            continue;
        }
        if (mDescriptors.size() == binderhub::kMaxDescriptors) {
            return false;
        }
        mDescriptors.push_back(static_cast<int>(object.fd));
        object.fd = static_cast<uint32_t>(mDescriptors.size() - 1);
        memcpy(payload.data() + position, &object, sizeof(object));
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
