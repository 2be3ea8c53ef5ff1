#pragma once

#include <binder/Binder.h>
#include <hidl/HidlSupport.h>
#include <hidl/Status.h>
#include <utils/Mutex.h>

#include <functional>

namespace android::hidl::base::V1_0 {

/**
 * What every HIDL interface has. An implementation derives from its interface and overrides what
 * the interface declares; an object of another process is a proxy. Thread-safe.
 */
struct IBase : public virtual RefBase {
    using interfaceChain_cb =
            std::function<void(const hardware::hidl_vec<hardware::hidl_string>& descriptors)>;
    using interfaceDescriptor_cb = std::function<void(const hardware::hidl_string& descriptor)>;

    static const char* const descriptor;

    /** Whether this is a proxy. */
    virtual bool isRemote() const { return false; }

    /** The interfaces of the object, the most derived first. */
    virtual hardware::Return<void> interfaceChain(interfaceChain_cb callback);
    /** The most derived interface. */
    virtual hardware::Return<void> interfaceDescriptor(interfaceDescriptor_cb callback);
    /** OK while the object can be called. */
    virtual hardware::Return<void> ping();
    /** System properties have changed: what was read from them must be read again. One-way. */
    virtual hardware::Return<void> notifySyspropsChanged();

    /**
     * Tells `recipient` when the process of the object ends; false when it has ended, or for a null
     * recipient. The recipient, and also the proxy the link was made on, must be kept by the
     * caller. An object of this process takes links and does not tell: it cannot end alone. An
     * implementation that stands for a service that can overrides both.
     */
    virtual hardware::Return<bool> linkToDeath(const sp<hardware::hidl_death_recipient>& recipient,
                                               uint64_t cookie);
    /** Takes back the newest link of `recipient`; false when there is none. */
    virtual hardware::Return<bool> unlinkToDeath(
            const sp<hardware::hidl_death_recipient>& recipient);

    /** For the runtime: the binder that stands for this object, never null. */
    virtual sp<IBinder> _hidl_binder();

  protected:
    /** For the runtime: a new binder object that passes transactions on to this implementation. */
    virtual sp<BBinder> _hidl_newStub();

  private:
    // Guards mStub: as long as anyone holds the stub there is no second one. The innermost lock.
    Mutex mStubLock;
    wp<BBinder> mStub GUARDED_BY(mStubLock);
};

}  // namespace android::hidl::base::V1_0
