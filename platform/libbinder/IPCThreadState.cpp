#include <binder/IPCThreadState.h>

#include <pthread.h>
#include <unistd.h>

#include <utility>

#include "DriverAccess.h"
#include "ThreadDriverState.h"

namespace android {

namespace {

pthread_once_t sKeyOnce = PTHREAD_ONCE_INIT;
pthread_key_t sKey;  // constant once sKeyOnce has run

constexpr int kTokenShift = 32;

int64_t makeToken(uint32_t high, uint32_t low) {
    return static_cast<int64_t>((static_cast<uint64_t>(high) << kTokenShift) | low);
}

uint32_t highOfToken(int64_t token) {
    return static_cast<uint32_t>(static_cast<uint64_t>(token) >> kTokenShift);
}

uint32_t lowOfToken(int64_t token) {
    return static_cast<uint32_t>(token);
}

}  // namespace

const int32_t IPCThreadState::kUnsetWorkSource;

IPCThreadState::IPCThreadState()
      : mProcess(ProcessState::self()),
        mLastError(OK),
        mServingStackPointer(nullptr),
        mWorkSource(kUnsetWorkSource),
        mPropagateWorkSource(false),
        mStrictModePolicy(0),
        mLastTransactionBinderFlags(0),
        mCallRestriction(mProcess->mCallRestriction) {
    clearCaller();
    mIn.setDataCapacity(BinderDriver::kReadBytes);
    mOut.setDataCapacity(BinderDriver::kReadBytes);
}

/** Runs on the thread that ends, and not in a process that never opened a driver. */
IPCThreadState::~IPCThreadState() {
    if (BinderDriver* driver = openedDriver(); driver != nullptr) {
        flushCommands();
        driver->exitThread();
    }
}

void IPCThreadState::threadDestructor(void* st) {
    // What is released meanwhile still finds its thread.
    pthread_setspecific(sKey, st);
    delete static_cast<IPCThreadState*>(st);
    pthread_setspecific(sKey, nullptr);
}

ThreadDriverState& threadDriverState() {
    static thread_local ThreadDriverState state;
    return state;
}

IPCThreadState* IPCThreadState::selfOrNull() {
    pthread_once(&sKeyOnce, [] { pthread_key_create(&sKey, threadDestructor); });
    return static_cast<IPCThreadState*>(pthread_getspecific(sKey));
}

IPCThreadState* IPCThreadState::self() {
    IPCThreadState* thread = selfOrNull();
    if (thread == nullptr) {
        thread = new IPCThreadState;
        pthread_setspecific(sKey, thread);
    }
    return thread;
}

const void* IPCThreadState::getServingStackPointer() const {
    return mServingStackPointer;
}

pid_t IPCThreadState::getCallingPid() const {
    return mCallingPid;
}

uid_t IPCThreadState::getCallingUid() const {
    return mCallingUid;
}

void IPCThreadState::clearCaller() {
    mCallingPid = getpid();
    mCallingSid = nullptr;
    mCallingUid = getuid();
}

int64_t IPCThreadState::clearCallingIdentity() {
    const int64_t token = makeToken(mCallingUid, static_cast<uint32_t>(mCallingPid));
    clearCaller();
    return token;
}

void IPCThreadState::restoreCallingIdentity(int64_t token) {
    mCallingUid = highOfToken(token);
    mCallingSid = nullptr;
    mCallingPid = static_cast<pid_t>(lowOfToken(token));
}

void IPCThreadState::setStrictModePolicy(int32_t policy) {
    mStrictModePolicy = policy;
}

int32_t IPCThreadState::getStrictModePolicy() const {
    return mStrictModePolicy;
}

int64_t IPCThreadState::setCallingWorkSourceUid(uid_t uid) {
    const int64_t token = setCallingWorkSourceUidWithoutPropagation(uid);
    mPropagateWorkSource = true;
    return token;
}

int64_t IPCThreadState::setCallingWorkSourceUidWithoutPropagation(uid_t uid) {
    const int64_t token =
            makeToken(mPropagateWorkSource ? 1 : 0, static_cast<uint32_t>(mWorkSource));
    mWorkSource = static_cast<int32_t>(uid);
    return token;
}

uid_t IPCThreadState::getCallingWorkSourceUid() const {
    return static_cast<uid_t>(mWorkSource);
}

int64_t IPCThreadState::clearCallingWorkSource() {
    return setCallingWorkSourceUid(static_cast<uid_t>(kUnsetWorkSource));
}

void IPCThreadState::restoreCallingWorkSource(int64_t token) {
    setCallingWorkSourceUidWithoutPropagation(lowOfToken(token));
    mPropagateWorkSource = highOfToken(token) == 1;
}

void IPCThreadState::clearPropagateWorkSource() {
    mPropagateWorkSource = false;
}

bool IPCThreadState::shouldPropagateWorkSource() const {
    return mPropagateWorkSource;
}

int32_t IPCThreadState::getLastTransactionBinderFlags() const {
    return mLastTransactionBinderFlags;
}

}  // namespace android
