// What a thread tells the driver about the handles of this process.

#include <binder/Binder.h>
#include <binder/BpBinder.h>
#include <binder/IPCThreadState.h>

#include "FlatObject.h"
#include "ThreadDriverState.h"

namespace android {

namespace {

// What may wait for a thread's next exchange: memory of a parcel, and commands in all.
constexpr size_t kLingeringBytes = 1024;
constexpr size_t kLingeringCommandBytes = 96;

/**
 * Hands the commands over, unless the thread will do so by itself before long: false then. Others
 * would perhaps never, and what they gave back would stay taken.
 */
bool flushIfNeeded(IPCThreadState* thread) {
    ThreadDriverState& state = threadDriverState();
    if (state.looper || state.flushing || thread->getServingStackPointer() != nullptr) {
        return false;
    }
    state.flushing = true;
    thread->flushCommands();
    state.flushing = false;
    return true;
}

}  // namespace

void IPCThreadState::incStrongHandle(int32_t handle, BpBinder* proxy) {
    mOut.writeUint32(BC_ACQUIRE);
    mOut.writeInt32(handle);
    if (!flushIfNeeded(this)) {
        // Until the driver holds the handle for the proxy, the proxy must not give it back.
        proxy->incStrong(mProcess.get());
        mPostWriteStrongDerefs.push(proxy);
    }
}

void IPCThreadState::decStrongHandle(int32_t handle) {
    mOut.writeUint32(BC_RELEASE);
    mOut.writeInt32(handle);
    flushIfNeeded(this);
}

/** Always waits for what follows: a proxy is made in order to be held strongly at once. */
void IPCThreadState::incWeakHandle(int32_t handle, BpBinder* proxy) {
    mOut.writeUint32(BC_INCREFS);
    mOut.writeInt32(handle);
    proxy->getWeakRefs()->incWeak(mProcess.get());
    mPostWriteWeakDerefs.push(proxy->getWeakRefs());
}

void IPCThreadState::decWeakHandle(int32_t handle) {
    mOut.writeUint32(BC_DECREFS);
    mOut.writeInt32(handle);
    flushIfNeeded(this);
}

/** No driver carries out BC_ATTEMPT_ACQUIRE. */
status_t IPCThreadState::attemptIncStrongHandle(int32_t) {
    return INVALID_OPERATION;
}

void IPCThreadState::expungeHandle(int32_t handle, IBinder* binder) {
    self()->mProcess->expungeHandle(handle, binder);
}

status_t IPCThreadState::requestDeathNotification(int32_t handle, BpBinder* proxy) {
    mOut.writeUint32(BC_REQUEST_DEATH_NOTIFICATION);
    mOut.writeInt32(handle);
    return mOut.writeUint64(reinterpret_cast<uintptr_t>(proxy));
}

status_t IPCThreadState::clearDeathNotification(int32_t handle, BpBinder* proxy) {
    mOut.writeUint32(BC_CLEAR_DEATH_NOTIFICATION);
    mOut.writeInt32(handle);
    return mOut.writeUint64(reinterpret_cast<uintptr_t>(proxy));
}

/** A parcel that ends gives its memory back, and closes the descriptors in it. */
void IPCThreadState::freeBuffer(Parcel* parcel, const uint8_t* data, size_t dataSize,
                                const binder_size_t* objects, size_t objectsSize, void*) {
    if (parcel != nullptr) {
        closeDescriptors(data, dataSize, objects, objectsSize);
    }
    IPCThreadState* thread = self();
    thread->mOut.writeUint32(BC_FREE_BUFFER);
    thread->mOut.writeUint64(reinterpret_cast<uintptr_t>(data));
    // A little memory that holds no binder may wait for the thread's next call: most threads make
    // one, and are spared an exchange for each.
    if (dataSize > kLingeringBytes || objectsSize > 0 ||
        thread->mOut.dataSize() > kLingeringCommandBytes) {
        flushIfNeeded(thread);
    }
}

void IPCThreadState::processPendingDerefs() {
    // While returns are unread the driver may be about to take the references again.
    if (mIn.dataPosition() < mIn.dataSize()) {
        return;
    }
    while (!mPendingWeakDerefs.isEmpty() || !mPendingStrongDerefs.isEmpty()) {
        while (!mPendingWeakDerefs.isEmpty()) {
            RefBase::weakref_type* refs = mPendingWeakDerefs[0];
            mPendingWeakDerefs.removeAt(0);
            refs->decWeak(mProcess.get());
        }
        // One at a time: what it destroys may call, and so bring more weak ones, which go first.
        if (!mPendingStrongDerefs.isEmpty()) {
            BBinder* binder = mPendingStrongDerefs[0];
            mPendingStrongDerefs.removeAt(0);
            binder->decStrong(mProcess.get());
        }
    }
}

void IPCThreadState::processPostWriteDerefs() {
    if (mPostWriteWeakDerefs.isEmpty() && mPostWriteStrongDerefs.isEmpty()) {
        return;
    }
    // Taken away first: what is destroyed here may call, and come by here again.
    const Vector<RefBase::weakref_type*> weak = mPostWriteWeakDerefs;
    const Vector<RefBase*> strong = mPostWriteStrongDerefs;
    mPostWriteWeakDerefs.clear();
    mPostWriteStrongDerefs.clear();
    for (RefBase::weakref_type* refs : weak) {
        refs->decWeak(mProcess.get());
    }
    for (RefBase* binder : strong) {
        binder->decStrong(mProcess.get());
    }
}

}  // namespace android
