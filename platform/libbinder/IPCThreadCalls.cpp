// A thread's exchanges with the driver: calls, their outcome, replies.

#include <binder/IPCThreadState.h>
#include <log/log.h>

#include <cstring>
#include <vector>

#include "DriverAccess.h"
#include "Returns.h"
#include "ThreadDriverState.h"

namespace android {

namespace {

bool isCompletion(uint32_t command) {
    return command == BR_TRANSACTION_COMPLETE || command == BR_ONEWAY_SPAM_SUSPECT ||
           command == BR_FAILED_REPLY || command == BR_DEAD_REPLY || command == BR_FROZEN_REPLY;
}

/**
 * Drops the commands that the driver took. It stops behind one that failed until that failure has
 * been read, so that the rest goes with a later exchange. A driver that refuses the commands
 * themselves would do so again: they are dropped as well.
 */
void dropConsumed(Parcel* out, const binder_write_read& exchange, status_t status) {
    const size_t size = out->dataSize();
    const auto consumed = static_cast<size_t>(exchange.write_consumed);
    if (status != OK || consumed >= size) {
        out->setDataSize(0);
        return;
    }
    const std::vector<uint8_t> rest(out->data() + consumed, out->data() + size);
    out->setData(rest.data(), rest.size());
    out->setDataPosition(rest.size());
}

binder_write_read writingAll(const Parcel& out) {
    binder_write_read exchange = {};
    exchange.write_size = out.dataSize();
    exchange.write_buffer = reinterpret_cast<uintptr_t>(out.data());
    return exchange;
}

/** What a reply holds that is no parcel. */
status_t statusIn(const Parcel& reply) {
    int32_t status = UNKNOWN_ERROR;
    reply.readInt32(&status);
    return status;
}

void checkRestriction(ProcessState::CallRestriction restriction, uint32_t code) {
    using Restriction = ProcessState::CallRestriction;
    // Asking for the context object is not the caller's doing.
    if (restriction == Restriction::NONE || code == IBinder::PING_TRANSACTION) {
        return;
    }
    LOG_ALWAYS_FATAL_IF(restriction == Restriction::FATAL_IF_NOT_ONEWAY,
                        "this process may make one-way calls only, not call %u", code);
    ALOGE("this process should make one-way calls only, not call %u", code);
}

}  // namespace

status_t IPCThreadState::transact(int32_t handle, uint32_t code, const Parcel& data, Parcel* reply,
                                  uint32_t flags) {
    const bool oneWay = (flags & TF_ONE_WAY) != 0;
    const status_t status = writeTransactionData(BC_TRANSACTION, flags | TF_ACCEPT_FDS, handle,
                                                 code, data, nullptr);
    if (status != OK) {
        if (reply != nullptr) {
            reply->setError(status);
        }
        return status;
    }
    if (oneWay) {
        return waitForResponse(nullptr, nullptr);
    }
    checkRestriction(mCallRestriction, code);
    Parcel unwanted;
    return waitForResponse(reply != nullptr ? reply : &unwanted);
}

/** The parcel, or `statusBuffer` in place of one with an error, must live until it is handed over.
 */
status_t IPCThreadState::writeTransactionData(int32_t cmd, uint32_t binderFlags, int32_t handle,
                                              uint32_t code, const Parcel& data,
                                              status_t* statusBuffer) {
    binder_transaction_data call = {};
    call.target.handle = static_cast<uint32_t>(handle);
    call.code = code;
    call.flags = binderFlags;
    const status_t error = data.errorCheck();
    if (error == OK) {
        call.data_size = data.ipcDataSize();
        call.data.ptr.buffer = data.ipcData();
        call.offsets_size = data.ipcObjectsCount() * sizeof(binder_size_t);
        call.data.ptr.offsets = data.ipcObjects();
    } else if (statusBuffer != nullptr) {
        *statusBuffer = error;
        call.flags |= TF_STATUS_CODE;
        call.data_size = sizeof(*statusBuffer);
        call.data.ptr.buffer = reinterpret_cast<uintptr_t>(statusBuffer);
    } else {
        mLastError = error;
        return error;
    }
    mOut.writeInt32(cmd);
    return mOut.write(&call, sizeof(call));
}

/**
 * Hands over what is in mOut and, with `doReceive`, reads returns into mIn unless some are unread
 * there; then the commands wait as well, for what is unread may add to them.
 */
status_t IPCThreadState::talkWithDriver(bool doReceive) {
    const bool reads = doReceive && mIn.dataPosition() >= mIn.dataSize();
    if (doReceive && !reads) {
        return OK;
    }
    binder_write_read exchange = writingAll(mOut);
    if (reads) {
        exchange.read_size = mIn.dataCapacity();
        exchange.read_buffer = reinterpret_cast<uintptr_t>(mIn.data());
    }
    if (exchange.write_size == 0 && exchange.read_size == 0) {
        return OK;
    }
    const status_t status = exchangeWithDriver(&exchange);
    if (reads) {
        // Not by setDataSize, which would clear what the driver has just put there.
        mIn.mDataSize = status == OK ? static_cast<size_t>(exchange.read_consumed) : 0;
        mIn.mDataPos = 0;
    }
    dropConsumed(&mOut, exchange, status);
    if (mOut.dataSize() == 0) {
        processPostWriteDerefs();
    }
    return status;
}

/**
 * Reads and carries out returns until the thread's last transaction is over. Without `reply` and
 * `acquireResult` that is when the driver has taken it: a one-way call, or a reply.
 *
 * The driver says of each transaction, replies too, that it took it, in the order in which it got
 * them. sendReply does not always wait for that. What is still open of replies therefore comes
 * first here, and says nothing about the transaction that is waited for.
 */
status_t IPCThreadState::waitForResponse(Parcel* reply, status_t* acquireResult) {
    uint32_t& openReplies = threadDriverState().openReplies;
    status_t status = OK;
    bool over = false;
    while (!over && (status = talkWithDriver()) == OK) {
        if (mIn.dataAvail() == 0) {
            continue;
        }
        const uint32_t command = mIn.readUint32();
        if (openReplies > 0 && isCompletion(command)) {
            --openReplies;
            continue;
        }
        switch (command) {
            case BR_TRANSACTION_COMPLETE:
            case BR_ONEWAY_SPAM_SUSPECT:
                over = reply == nullptr && acquireResult == nullptr;
                break;
            case BR_DEAD_REPLY:
                status = DEAD_OBJECT;
                break;
            case BR_FAILED_REPLY:
            case BR_FROZEN_REPLY:
                status = FAILED_TRANSACTION;
                break;
            case BR_REPLY: {
                const auto data = readReturn<binder_transaction_data>(mIn);
                const bool isCode = (data.flags & TF_STATUS_CODE) != 0;
                Parcel code;
                Parcel* received = isCode || reply == nullptr ? &code : reply;
                received->ipcSetDataReference(dataOf(data), data.data_size, objectsOf(data),
                                              objectCountOf(data), freeBuffer, this);
                status = isCode ? statusIn(*received) : received->errorCheck();
                over = reply != nullptr;
                break;
            }
            default:
                status = executeCommand(static_cast<int32_t>(command));
                break;
        }
        if (status != OK) {
            break;
        }
    }
    if (status != OK) {
        // With the driver everything behind it is gone.
        status = isDriverGone(status) ? DEAD_OBJECT : status;
        mLastError = status;
        if (reply != nullptr) {
            reply->setError(status);
        }
        if (acquireResult != nullptr) {
            *acquireResult = status;
        }
    }
    return status;
}

/**
 * Hands over a reply, together with what was to be handed over before it. A reply with objects is
 * waited for: what it holds must live until the driver has taken its own references. For any other
 * the thread does not read: that the driver took it is read along with what comes next (see
 * waitForResponse).
 *
 * When nothing can run on this thread until it reads again, the driver is told so. That is when the
 * thread does not return to a poller's code, when no reference is to be given back, which may
 * destroy binders, and when no return is unread.
 */
status_t IPCThreadState::sendReply(const Parcel& reply, uint32_t flags) {
    status_t statusBuffer;
    writeTransactionData(BC_REPLY, flags, -1, 0, reply, &statusBuffer);
    if (reply.objectsCount() > 0) {
        return waitForResponse(nullptr, nullptr);
    }
    const bool derefs = !mPendingStrongDerefs.isEmpty() || !mPendingWeakDerefs.isEmpty() ||
                        !mPostWriteStrongDerefs.isEmpty() || !mPostWriteWeakDerefs.isEmpty();
    ThreadDriverState& state = threadDriverState();
    const bool readsNext = !derefs && !state.polled && mIn.dataPosition() >= mIn.dataSize();
    binder_write_read exchange = writingAll(mOut);
    const status_t status = exchangeWithDriver(&exchange, readsNext);
    dropConsumed(&mOut, exchange, status);
    if (status != OK) {
        return status;
    }
    if (mOut.dataSize() > 0) {
        return waitForResponse(nullptr, nullptr);
    }
    ++state.openReplies;
    processPostWriteDerefs();
    return OK;
}

}  // namespace android
