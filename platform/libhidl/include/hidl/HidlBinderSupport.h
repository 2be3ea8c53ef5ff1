#pragma once

#include <android/hidl/base/1.0/IBase.h>

namespace android::hardware {

/** The binder that stands for an object; null for null. */
inline sp<IBinder> toBinder(const sp<hidl::base::V1_0::IBase>& object) {
    return object != nullptr ? object->_hidl_binder() : nullptr;
}

namespace details {

/** The implementation behind a binder of this process; null for any other binder. */
sp<hidl::base::V1_0::IBase> localObject(const sp<IBinder>& binder);

/** Asks the object for its interfaces. Any error of the call. */
Return<bool> hasInterface(const sp<hidl::base::V1_0::IBase>& object, const char* descriptor);

/**
 * Once in a process, a thread that serves callbacks and notices of death: a client need not start
 * a pool for them. Nothing when `remote` is of this process.
 */
void serveCallbacksFrom(IBinder* remote);

}  // namespace details

/**
 * The object that a binder stands for: the implementation itself if it is of this process, else a
 * new proxy. Null for null and for an implementation of another interface; what a binder of another
 * process is only its calls tell. Thread-safe.
 */
template <typename I>
sp<I> fromBinder(const sp<IBinder>& binder) {
    if (binder == nullptr) {
        return nullptr;
    }
    const sp<hidl::base::V1_0::IBase> local = details::localObject(binder);
    return local != nullptr ? sp<I>(dynamic_cast<I*>(local.get())) : I::_hidl_newProxy(binder);
}

}  // namespace android::hardware
