#include <hidl/HidlTransportSupport.h>

#include <binder/ProcessState.h>
#include <hidl/HidlBinderSupport.h>
#include <log/log.h>

namespace android::hardware {

void configureRpcThreadpool(size_t maxThreads, bool callerWillJoin) {
    LOG_ALWAYS_FATAL_IF(maxThreads < 1, "configureRpcThreadpool() for no threads");
    const size_t started = maxThreads - (callerWillJoin ? 1 : 0);
    const sp<ProcessState> process = ProcessState::self();
    // One is started here; the driver asks for the others.
    process->setThreadPoolMaxThreadCount(started > 0 ? started - 1 : 0);
    if (started > 0) {
        process->startThreadPool();
    }
}

bool interfacesEqual(const sp<hidl::base::V1_0::IBase>& left,
                     const sp<hidl::base::V1_0::IBase>& right) {
    if (left == nullptr || right == nullptr || !left->isRemote() || !right->isRemote()) {
        return left == right;
    }
    return toBinder(left) == toBinder(right);
}

}  // namespace android::hardware
