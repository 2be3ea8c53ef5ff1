// The proxies of a process: for each handle at most one.

#include <binder/BpBinder.h>
#include <binder/IPCThreadState.h>
#include <binder/Parcel.h>
#include <binder/ProcessState.h>

namespace android {

namespace {

// Handles are small numbers, given out from 0 upwards: a greater one comes from no driver.
constexpr int32_t kMaxHandles = 1 << 20;

/** Whether someone stands behind handle 0: the only one that exists without having been given. */
bool contextManagerAnswers() {
    const Parcel data;
    return IPCThreadState::self()->transact(0, IBinder::PING_TRANSACTION, data, nullptr, 0) !=
           DEAD_OBJECT;
}

}  // namespace

ProcessState::handle_entry* ProcessState::lookupHandleLocked(int32_t handle) {
    if (handle < 0 || handle >= kMaxHandles) {
        return nullptr;
    }
    const auto index = static_cast<size_t>(handle);
    if (index >= mHandleToObject.size()) {
        const handle_entry none = {nullptr, nullptr};
        const size_t missing = index + 1 - mHandleToObject.size();
        if (mHandleToObject.insertAt(none, mHandleToObject.size(), missing) < 0) {
            return nullptr;
        }
    }
    return &mHandleToObject.editItemAt(index);
}

/** Null for a handle that cannot be, and for handle 0 while there is no context manager. */
sp<IBinder> ProcessState::getStrongProxyForHandle(int32_t handle) {
    if (handle == 0) {
        mLock.lock();
        const handle_entry* context = lookupHandleLocked(0);
        const bool known = context != nullptr && context->binder != nullptr;
        mLock.unlock();
        // Without the lock: the context manager may call back.
        if (!known && !contextManagerAnswers()) {
            return nullptr;
        }
    }
    IBinder* binder;
    RefBase::weakref_type* refs;
    {
        AutoMutex lock(mLock);
        handle_entry* entry = lookupHandleLocked(handle);
        if (entry == nullptr) {
            return nullptr;
        }
        // A proxy stays in the table until its destructor runs: one that nobody holds, not even
        // weakly, is on its way there and is replaced.
        if (entry->binder == nullptr || !entry->refs->attemptIncWeak(this)) {
            entry->binder = BpBinder::create(handle);
            entry->refs = entry->binder->getWeakRefs();
            entry->refs->incWeak(this);
        }
        binder = entry->binder;
        refs = entry->refs;
    }
    // Without the lock as well: the first strong reference tells the driver.
    sp<IBinder> proxy;
    proxy.force_set(binder);
    refs->decWeak(this);
    return proxy;
}

void ProcessState::expungeHandle(int32_t handle, IBinder* binder) {
    AutoMutex lock(mLock);
    handle_entry* entry = lookupHandleLocked(handle);
    // Meanwhile the place may have been given to another proxy.
    if (entry != nullptr && entry->binder == binder) {
        entry->binder = nullptr;
    }
}

}  // namespace android
