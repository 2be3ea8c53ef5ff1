#include "HubDriverChannel.h"

#include <cerrno>

#include "HubDriverReturns.h"

namespace android {

namespace {

bool saysGone(int status) {
    return status == -EPIPE || status == -ECONNRESET || status == -ENOTCONN;
}

std::span<const uint8_t> unwritten(const binder_write_read& exchange) {
    // The driver's format holds pointers as numbers.
    return {reinterpret_cast<const uint8_t*>(  // NOLINT(performance-no-int-to-ptr)
                    static_cast<uintptr_t>(exchange.write_buffer + exchange.write_consumed)),
            exchange.write_size - exchange.write_consumed};
}

}  // namespace

status_t HubDriverChannel::writeRead(binder_write_read* exchange, bool readsNext) {
    const bool reads = exchange->read_size > exchange->read_consumed;
    const status_t status = write(exchange, reads || readsNext);
    return status == OK && reads ? read(exchange) : status;
}

status_t HubDriverChannel::awaitReturns() {
    binder_write_read nothing = {};
    return write(&nothing, true);
}

status_t HubDriverChannel::write(binder_write_read* exchange, bool wantsReturns) {
    const bool asks = wantsReturns && !mWaits;
    status_t commandStatus = OK;
    do {
        const std::span<const uint8_t> rest = unwritten(*exchange);
        const size_t taken = mWriter.take(rest, &commandStatus);
        const bool asksNow = asks && commandStatus == OK && taken == rest.size();
        const status_t status = mWriter.empty() && !asksNow ? OK : send(asksNow);
        if (status != OK) {
            return status;
        }
        exchange->write_consumed += taken;
    } while (commandStatus == OK && exchange->write_consumed < exchange->write_size);
    return commandStatus;
}

status_t HubDriverChannel::send(bool wantsReturns) {
    const uint32_t flags = wantsReturns ? uint32_t{binderhub::kWantsReturns} : 0;
    int status = binderhub::sendMessage(mSocket.get(), mWriter.message(flags), true);
    if (status != 0 && !saysGone(status) && mWriter.hasPayload()) {
        // A bad descriptor in the data, or no memory for it, costs this call only.
        mWriter.refuse();
        status = binderhub::sendMessage(mSocket.get(), mWriter.message(flags), true);
    }
    mWriter.forget();
    if (status != 0) {
        return hubGone();
    }
    mWaits |= wantsReturns;
    return OK;
}

status_t HubDriverChannel::read(binder_write_read* exchange) {
    const int received =
            mReceiver.receive(mSocket.get(), true, binderhub::kBufferSpace, &mReceived);
    if (received == -EINTR) {
        return received;
    }
    if (received != 1 || mReceived.header.kind != binderhub::kExchange) {
        return hubGone();
    }
    mWaits = false;
    bool unread = false;
    if (deliverReturns(&mReceived, exchange, &unread) != OK) {
        return hubGone();
    }
    mReceived.filePayload = {};
    return unread ? giveUnreadBack() : OK;
}

status_t HubDriverChannel::giveUnreadBack() {
    struct __attribute__((packed)) {
        uint32_t command;
        uint64_t bufferId;
    } const freeBuffer = {BC_FREE_BUFFER, mReceived.header.bufferId};
    binderhub::OutMessage message;
    message.header.kind = binderhub::kExchange;
    message.commands = {reinterpret_cast<const uint8_t*>(&freeBuffer), sizeof(freeBuffer)};
    return binderhub::sendMessage(mSocket.get(), message, true) == 0 ? OK : hubGone();
}

/** A hub that breaks its own rules is as good as gone. */
status_t HubDriverChannel::hubGone() {
    mProcess.disconnect();
    return -EBADF;
}

}  // namespace android
