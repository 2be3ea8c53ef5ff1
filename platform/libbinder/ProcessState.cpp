#include <binder/ProcessState.h>

#include <binder/BpBinder.h>
#include <binder/IPCThreadState.h>
#include <binder/Stability.h>
#include <log/log.h>
#include <unistd.h>
#include <utils/Thread.h>

#include <atomic>
#include <cstring>
#include <mutex>

#include "DriverAccess.h"
#include "DriverChoice.h"

namespace android {

namespace {

std::once_flag sMade;
// Set within sMade. Never destroyed: threads that outlive main still use it.
std::atomic<ProcessState*> sProcess = nullptr;

class PoolThread : public Thread {
  public:
    PoolThread(const String8& name, bool isMain) : mName(name), mIsMain(isMain) {}

  private:
    bool threadLoop() override {
        androidSetThreadName(mName.string());
        IPCThreadState::self()->joinThreadPool(mIsMain);
        return false;
    }

    const String8 mName;
    const bool mIsMain;
};

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
    ProcessState* made = sProcess.load(std::memory_order_acquire);
    return made != nullptr ? sp<ProcessState>(made) : initWithDriver(kUsualDriver);
}

/** The driver itself is opened when it is first needed: local binders need none. */
sp<ProcessState> ProcessState::initWithDriver(const char* driver) {
    std::call_once(sMade, [driver] {
        auto* made = new ProcessState(driver);
        made->incStrong(&sProcess);
        sProcess.store(made, std::memory_order_release);
    });
    ProcessState* made = sProcess.load(std::memory_order_acquire);
    LOG_ALWAYS_FATAL_IF(strcmp(made->mDriverName.string(), driver) != 0,
                        "binder uses %s already, it cannot change to %s",
                        made->mDriverName.string(), driver);
    return made;
}

String8 ProcessState::getDriverName() {
    const BinderDriver* driver = openedDriver();
    return driver != nullptr ? String8(driver->name().c_str()) : mDriverName;
}

sp<IBinder> ProcessState::getContextObject(const sp<IBinder>&) {
    const sp<IBinder> context = getStrongProxyForHandle(0);
    if (context != nullptr) {
        // The one binder that comes in no parcel, and so with no stability word.
        internal::Stability::markCompilationUnit(context.get());
    }
    return context;
}

bool ProcessState::becomeContextManager(context_check_func checkFunc, void* userData) {
    BinderDriver* driver = binderDriver();
    if (driver == nullptr) {
        return false;
    }
    // No security contexts: where no security module is loaded the driver would refuse every call.
    flat_binder_object object = {};
    object.hdr.type = BINDER_TYPE_BINDER;
    object.flags = FLAT_BINDER_FLAG_ACCEPTS_FDS;
    const status_t status = driver->becomeContextManager(object);
    if (status != OK) {
        ALOGE("cannot become the context manager of %s: %s", driver->name().c_str(),
              strerror(-status));
        return false;
    }
    AutoMutex lock(mLock);
    mBinderContextCheckFunc = checkFunc;
    mBinderContextUserData = userData;
    return true;
}

/** Without a driver there is nothing for pooled threads to wait on: none is started. */
void ProcessState::startThreadPool() {
    {
        AutoMutex lock(mLock);
        if (mThreadPoolStarted) {
            return;
        }
        mThreadPoolStarted = true;
    }
    if (binderDriver() != nullptr) {
        spawnPooledThread(true);
    }
}

void ProcessState::spawnPooledThread(bool isMain) {
    {
        AutoMutex lock(mLock);
        if (!mThreadPoolStarted || isDriverless()) {
            return;
        }
    }
    const String8 name = makeBinderThreadName();
    const sp<Thread> thread = new PoolThread(name, isMain);
    const status_t status = thread->run(name.string());
    ALOGE_IF(status != OK, "cannot start %s: %s", name.string(), strerror(-status));
}

status_t ProcessState::setThreadPoolMaxThreadCount(size_t maxThreads) {
    AutoMutex lock(mLock);  // the last of several calls at once wins with both
    pthread_mutex_lock(&mThreadCountLock);
    mMaxThreads = maxThreads;
    pthread_mutex_unlock(&mThreadCountLock);
    return setDriverMaxThreads(static_cast<uint32_t>(maxThreads));
}

void ProcessState::giveThreadPoolName() {
    androidSetThreadName(makeBinderThreadName().string());
}

String8 ProcessState::makeBinderThreadName() {
    const int32_t number = __atomic_fetch_add(&mThreadPoolSeq, 1, __ATOMIC_RELAXED);
    return String8::format("binder:%d_%X", getpid(), static_cast<unsigned>(number));
}

void ProcessState::setCallRestriction(CallRestriction restriction) {
    LOG_ALWAYS_FATAL_IF(IPCThreadState::selfOrNull() != nullptr,
                        "call restrictions must be set before threads use binder");
    mCallRestriction = restriction;
}

ssize_t ProcessState::getStrongRefCountForNodeByHandle(int32_t handle) {
    BinderDriver* driver = binderDriver();
    const ssize_t count =
            driver != nullptr ? driver->strongReferences(static_cast<uint32_t>(handle)) : -EBADF;
    return count < 0 ? -1 : count;
}

}  // namespace android
