#include <limits>
#include <memory>

#include <binder/ProcessState.h>

#include <unistd.h>
#include <utils/Thread.h>

namespace android {

namespace {

// Android's number for processes that do not say how many they want.
constexpr size_t kDefaultMaxThreads = 15;

}  // namespace

ProcessState::ProcessState(const char* driver)
      : mDriverName(driver),
        mDriverFD(-1),
        mVMStart(nullptr),
        mThreadCountLock(PTHREAD_MUTEX_INITIALIZER),
        mThreadCountDecrement(PTHREAD_COND_INITIALIZER),
        mExecutingThreadsCount(0),
        mMaxThreads(kDefaultMaxThreads),
        mStarvationStartTimeMs(0),
        mBinderContextCheckFunc(nullptr),
        mBinderContextUserData(nullptr),
        mThreadPoolStarted(false),
        mThreadPoolSeq(1),
        mCallRestriction(CallRestriction::NONE) {}

ProcessState::~ProcessState() = default;

sp<ProcessState> ProcessState::self() {
    // Never destroyed: threads that outlive main still use it.
    static sp<ProcessState>& process = *new sp<ProcessState>(new ProcessState("/dev/binder"));
    return process;
}

/** Without a driver there is nothing for pooled threads to wait on: none is started. */
void ProcessState::startThreadPool() {
    AutoMutex lock(mLock);
    mThreadPoolStarted = true;
}

status_t ProcessState::setThreadPoolMaxThreadCount(size_t maxThreads) {
    AutoMutex lock(mLock);
    mMaxThreads = maxThreads;
    return OK;
}

void ProcessState::giveThreadPoolName() {
    androidSetThreadName(makeBinderThreadName().string());
}

String8 ProcessState::makeBinderThreadName() {
    const int32_t number = __atomic_fetch_add(&mThreadPoolSeq, 1, __ATOMIC_RELAXED);
    return String8::format("binder:%d_%X", getpid(), static_cast<unsigned>(number));
}

}  // namespace android
