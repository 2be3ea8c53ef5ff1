#include <android/binder_process.h>
#include <binder/ProcessState.h>

using android::ProcessState;

void ABinderProcess_startThreadPool() {
    ProcessState::self()->startThreadPool();
}
