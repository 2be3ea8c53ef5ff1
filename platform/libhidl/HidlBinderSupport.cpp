#include <hidl/HidlBinderSupport.h>

#include <binder/IPCThreadState.h>
#include <hidl_linux/HidlStub.h>
#include <pthread.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <mutex>
#include <thread>

namespace android::hardware::details {

using hidl::base::V1_0::IBase;

sp<IBase> localObject(const sp<IBinder>& binder) {
    return binder->checkSubclass(&HidlStub::kSubclassId)
                   ? static_cast<HidlStub*>(binder.get())->object()
                   : nullptr;
}

Return<bool> hasInterface(const sp<IBase>& object, const char* descriptor) {
    bool found = false;
    const Return<void> asked = object->interfaceChain([&](const hidl_vec<hidl_string>& chain) {
        found = std::ranges::find(chain, hidl_string(descriptor)) != chain.end();
    });
    if (!asked.isOk()) {
        return ReturnReader::statusOf(asked);
    }
    return found;
}

namespace {

void serveBinders() {
    char name[16];  // what the kernel keeps
    std::snprintf(name, sizeof(name), "HwBinder:%d", getpid());
    pthread_setname_np(pthread_self(), name);
    IPCThreadState::self()->joinThreadPool(true);
}

}  // namespace

// A thread of our own instead of ProcessState::startThreadPool(): on Android HIDL has a pool apart,
// so a process sets up that of its other binders as if this one were not there.
void serveCallbacksFrom(IBinder* remote) {
    static std::once_flag sStarted;
    if (remote->remoteBinder() != nullptr) {
        std::call_once(sStarted, [] { std::thread(serveBinders).detach(); });
    }
}

}  // namespace android::hardware::details
