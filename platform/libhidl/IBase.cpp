#include <android/hidl/base/1.0/IBase.h>

#include <hidl_linux/HidlStub.h>
#include <utils/misc.h>

namespace android::hidl::base::V1_0 {

using hardware::Return;

const char* const IBase::descriptor = "android.hidl.base@1.0::IBase";

// NOLINTNEXTLINE(performance-unnecessary-value-param): the signature is Android's
Return<void> IBase::interfaceChain(interfaceChain_cb callback) {
    callback({IBase::descriptor});
    return {};
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the signature is Android's
Return<void> IBase::interfaceDescriptor(interfaceDescriptor_cb callback) {
    callback(IBase::descriptor);
    return {};
}

Return<void> IBase::ping() {
    return {};
}

Return<void> IBase::notifySyspropsChanged() {
    report_sysprop_change();
    return {};
}

Return<bool> IBase::linkToDeath(const sp<hardware::hidl_death_recipient>& recipient, uint64_t) {
    return recipient != nullptr;
}

Return<bool> IBase::unlinkToDeath(const sp<hardware::hidl_death_recipient>& recipient) {
    return recipient != nullptr;
}

sp<IBinder> IBase::_hidl_binder() {
    AutoMutex lock(mStubLock);
    sp<BBinder> stub = mStub.promote();
    if (stub == nullptr) {
        stub = _hidl_newStub();
        mStub = stub;
    }
    return stub;
}

sp<BBinder> IBase::_hidl_newStub() {
    return new hardware::details::HidlStub(this, IBase::descriptor);
}

}  // namespace android::hidl::base::V1_0
