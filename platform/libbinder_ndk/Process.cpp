#include <android/binder_process.h>
#include <binder/IPCThreadState.h>
#include <binder/ProcessState.h>

using android::IPCThreadState;
using android::ProcessState;

void ABinderProcess_startThreadPool() {
    ProcessState::self()->startThreadPool();
}

bool ABinderProcess_setThreadPoolMaxThreadCount(uint32_t numThreads) {
    return ProcessState::self()->setThreadPoolMaxThreadCount(numThreads) == android::OK;
}

void ABinderProcess_joinThreadPool() {
    IPCThreadState::self()->joinThreadPool();
}
