// Threads that carry out the driver's commands: those of the pool, and those that poll.

#include <binder/IPCThreadState.h>
#include <log/log.h>
#include <unistd.h>
#include <utils/SystemClock.h>

#include <cstring>

#include "DriverAccess.h"
#include "ThreadDriverState.h"

namespace android {

namespace {

// How long all threads may be busy before the log says so.
constexpr int64_t kStarvedMs = 100;

/** Whether others' code runs for this command: calls and death notices. */
bool occupiesThread(uint32_t command) {
    return command == BR_TRANSACTION || command == BR_TRANSACTION_SEC_CTX ||
           command == BR_DEAD_BINDER;
}

}  // namespace

/** The lock is a bare one of the C library in AOSP's header: the compiler does not check its use.
 */
status_t IPCThreadState::getAndExecuteCommand() {
    const status_t status = talkWithDriver();
    if (status != OK || mIn.dataAvail() < sizeof(uint32_t)) {
        return status;
    }
    const uint32_t command = mIn.readUint32();
    if (!occupiesThread(command)) {
        return executeCommand(static_cast<int32_t>(command));
    }
    ProcessState& process = *mProcess;
    pthread_mutex_lock(&process.mThreadCountLock);
    ++process.mExecutingThreadsCount;
    if (process.mExecutingThreadsCount >= process.mMaxThreads &&
        process.mStarvationStartTimeMs == 0) {
        process.mStarvationStartTimeMs = uptimeMillis();
    }
    pthread_mutex_unlock(&process.mThreadCountLock);

    const status_t result = executeCommand(static_cast<int32_t>(command));

    pthread_mutex_lock(&process.mThreadCountLock);
    --process.mExecutingThreadsCount;
    if (process.mExecutingThreadsCount < process.mMaxThreads &&
        process.mStarvationStartTimeMs != 0) {
        const int64_t starved = uptimeMillis() - process.mStarvationStartTimeMs;
        process.mStarvationStartTimeMs = 0;
        ALOGE_IF(starved > kStarvedMs, "all %zu binder threads were busy for %lld ms",
                 process.mMaxThreads, static_cast<long long>(starved));
        pthread_cond_broadcast(&process.mThreadCountDecrement);
    }
    pthread_mutex_unlock(&process.mThreadCountLock);
    return result;
}

/** Returns when the driver is gone. Without one no call ever arrives: the thread stays here. */
void IPCThreadState::joinThreadPool(bool isMain) {
    while (binderDriver() == nullptr) {
        pause();
    }
    ThreadDriverState& state = threadDriverState();
    state.looper = true;
    mOut.writeUint32(isMain ? BC_ENTER_LOOPER : BC_REGISTER_LOOPER);
    status_t status;
    do {
        processPendingDerefs();
        status = getAndExecuteCommand();
        LOG_ALWAYS_FATAL_IF(status != OK && status != TIMED_OUT && !isDriverGone(status),
                            "%s fails: %s", mProcess->getDriverName().string(), strerror(-status));
        // A thread beyond the main one may go when the driver needs it no longer.
    } while (!isDriverGone(status) && (status != TIMED_OUT || isMain));
    state.looper = false;
    mOut.writeUint32(BC_EXIT_LOOPER);
    talkWithDriver(false);
}

int IPCThreadState::setupPolling(int* fd) {
    BinderDriver* driver = binderDriver();
    if (driver == nullptr) {
        return -EBADF;
    }
    threadDriverState().polled = true;
    mOut.writeUint32(BC_ENTER_LOOPER);
    flushCommands();
    *fd = driver->pollDescriptor();
    return *fd < 0 ? *fd : OK;
}

/** To be called when the descriptor of setupPolling is readable: it waits otherwise. */
status_t IPCThreadState::handlePolledCommands() {
    status_t status;
    do {
        status = getAndExecuteCommand();
    } while (mIn.dataPosition() < mIn.dataSize());
    processPendingDerefs();
    flushCommands();
    // A driver may have to be asked for more before its descriptor can tell of it.
    if (BinderDriver* driver = binderDriver(); status == OK && driver != nullptr) {
        driver->pollDescriptor();
    }
    return status;
}

void IPCThreadState::flushCommands() {
    talkWithDriver(false);
    // What was given back meanwhile may have added commands.
    if (mOut.dataSize() > 0) {
        talkWithDriver(false);
    }
}

}  // namespace android
