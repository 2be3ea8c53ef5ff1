#include <binder_linux/LocalCall.h>

#include <binder/IPCThreadState.h>

namespace android {

LocalCall::LocalCall(uid_t uid, pid_t pid)
      : mIdentity(IPCThreadState::self()->clearCallingIdentity()),
        mWorkSource(IPCThreadState::self()->clearCallingWorkSource()),
        mStrictModePolicy(IPCThreadState::self()->getStrictModePolicy()) {
    IPCThreadState* thread = IPCThreadState::self();
    thread->restoreCallingIdentity(
            static_cast<int64_t>((static_cast<uint64_t>(uid) << 32) | static_cast<uint32_t>(pid)));
    thread->clearPropagateWorkSource();
    thread->setStrictModePolicy(0);
}

LocalCall::~LocalCall() {
    IPCThreadState* thread = IPCThreadState::self();
    thread->setStrictModePolicy(mStrictModePolicy);
    thread->restoreCallingWorkSource(mWorkSource);
    thread->restoreCallingIdentity(mIdentity);
}

}  // namespace android
