// What the driver asks of a thread.

#include <binder/Binder.h>
#include <binder/BpBinder.h>
#include <binder/IPCThreadState.h>
#include <log/log.h>

#include <tuple>

#include "Returns.h"
#include "ThreadDriverState.h"

namespace android {

namespace {

/** The binder behind handle 0. Set before the process becomes the context manager. */
sp<BBinder>& contextObject() {
    static sp<BBinder>& object = *new sp<BBinder>;  // never destroyed: threads outlive main
    return object;
}

// As objects are flattened: `ptr` has the address of the weak references, `cookie` the binder's.
RefBase::weakref_type* refsOf(const binder_ptr_cookie& object) {
    return addressOf<RefBase::weakref_type>(object.ptr);
}

BBinder* binderOf(const binder_ptr_cookie& object) {
    return static_cast<BBinder*>(addressOf<IBinder>(object.cookie));
}

/** What a call changes of its thread, in the order in which executeCommand names it. */
using Served = std::tuple<const void*, pid_t, const char*, uid_t, int32_t, int32_t, bool, int32_t>;

/** References that the driver holds for others. */
void takeReference(uint32_t command, const binder_ptr_cookie& object, Parcel* out,
                   const void* owner) {
    if (command == BR_INCREFS) {
        refsOf(object)->incWeak(owner);
    } else {
        binderOf(object)->incStrong(owner);
    }
    out->writeUint32(command == BR_INCREFS ? BC_INCREFS_DONE : BC_ACQUIRE_DONE);
    out->write(&object, sizeof(object));
}

/** Commands that concern no binder. */
status_t executePlain(uint32_t command, const Parcel& in) {
    uint32_t& openReplies = threadDriverState().openReplies;
    switch (command) {
        case BR_OK:
        case BR_NOOP:
            return OK;
        case BR_TRANSACTION_COMPLETE:
        case BR_ONEWAY_SPAM_SUSPECT:
        case BR_FAILED_REPLY:
        case BR_DEAD_REPLY:
        case BR_FROZEN_REPLY:
            // Of a reply that was not waited for; when it went wrong its caller has been told.
            openReplies -= openReplies > 0 ? 1 : 0;
            return OK;
        case BR_FINISHED:
            return TIMED_OUT;
        case BR_ERROR:
            return in.readInt32();
        default:
            ALOGE("the driver asks for something unknown: %#x", command);
            return UNKNOWN_ERROR;
    }
}

/** Runs the call on its binder, if that still lives: the driver itself holds it weakly only. */
status_t callTarget(const binder_transaction_data& call, const Parcel& data, Parcel* reply,
                    const void* owner) {
    if (const status_t status = data.errorCheck(); status != OK) {
        return status;
    }
    const binder_ptr_cookie target = {call.target.ptr, call.cookie};
    if (target.ptr == 0) {
        const sp<BBinder> context = contextObject();
        return context != nullptr ? context->transact(call.code, data, reply, call.flags)
                                  : UNKNOWN_TRANSACTION;
    }
    if (!refsOf(target)->attemptIncStrong(owner)) {
        return UNKNOWN_TRANSACTION;
    }
    const status_t status = binderOf(target)->transact(call.code, data, reply, call.flags);
    binderOf(target)->decStrong(owner);
    return status;
}

}  // namespace

void IPCThreadState::setTheContextObject(sp<BBinder> obj) {
    contextObject() = std::move(obj);
}

/**
 * Carries out one command. A call runs with its caller's identity; all that it changes of the
 * thread is put back. Its parcel is given back before the reply goes, in the same exchange.
 */
status_t IPCThreadState::executeCommand(int32_t cmd) {
    const auto command = static_cast<uint32_t>(cmd);
    switch (command) {
        case BR_TRANSACTION:
        case BR_TRANSACTION_SEC_CTX:
            break;
        case BR_INCREFS:
        case BR_ACQUIRE:
            takeReference(command, readReturn<binder_ptr_cookie>(mIn), &mOut, mProcess.get());
            return OK;
        case BR_RELEASE:
            mPendingStrongDerefs.push(binderOf(readReturn<binder_ptr_cookie>(mIn)));
            return OK;
        case BR_DECREFS:
            mPendingWeakDerefs.push(refsOf(readReturn<binder_ptr_cookie>(mIn)));
            return OK;
        case BR_DEAD_BINDER: {
            const auto cookie = readReturn<binder_uintptr_t>(mIn);
            addressOf<BpBinder>(cookie)->sendObituary();
            mOut.writeUint32(BC_DEAD_BINDER_DONE);
            return mOut.writeUint64(cookie);
        }
        case BR_CLEAR_DEATH_NOTIFICATION_DONE: {
            auto* proxy = addressOf<BpBinder>(readReturn<binder_uintptr_t>(mIn));
            proxy->getWeakRefs()->decWeak(proxy);
            return OK;
        }
        case BR_SPAWN_LOOPER:
            mProcess->spawnPooledThread(false);
            return OK;
        default:
            return executePlain(command, mIn);
    }

    binder_transaction_data_secctx received = {};
    mIn.read(&received, command == BR_TRANSACTION ? sizeof(binder_transaction_data)
                                                  : sizeof(binder_transaction_data_secctx));
    const binder_transaction_data& call = received.transaction_data;
    Parcel data;
    Parcel reply;
    data.ipcSetDataReference(dataOf(call), call.data_size, objectsOf(call), objectCountOf(call),
                             freeBuffer, this);
    auto changed =
            std::tie(mServingStackPointer, mCallingPid, mCallingSid, mCallingUid, mStrictModePolicy,
                     mWorkSource, mPropagateWorkSource, mLastTransactionBinderFlags);
    const Served before = changed;
    changed =
            Served(&received, call.sender_pid, addressOf<const char>(received.secctx),
                   call.sender_euid, 0, kUnsetWorkSource, false, static_cast<int32_t>(call.flags));
    const status_t status = callTarget(call, data, &reply, this);
    data.freeData();
    if ((call.flags & TF_ONE_WAY) == 0) {
        if (status != OK) {
            reply.setError(status);
        }
        sendReply(reply, call.flags & TF_CLEAR_BUF);
    }
    changed = before;
    return OK;
}

}  // namespace android
