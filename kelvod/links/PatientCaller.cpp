#include "links/PatientCaller.h"

#include <pthread.h>
#include <string.h>
#include <utils/Condition.h>
#include <utils/Mutex.h>

#include "base/Log.h"
#include "base/Time.h"

namespace kelvo {

using android::Condition;
using android::Mutex;

namespace {

constexpr int64_t kPatience = kNanosPerSecond;
constexpr char kThreadName[] = "service call";

}  // namespace

/** What callers and the thread share; lives as long as either. */
class PatientCaller::Line : public std::enable_shared_from_this<Line> {
  public:
    explicit Line(std::string service) : mService(std::move(service)) {}

    /** True when the call was made and has returned before the deadline (monotonic, ns). */
    bool perform(std::function<void()> call, int64_t deadline);
    /** The thread ends when nothing is out. */
    void end();

  private:
    enum class State {
        FREE,
        BUSY,  // a call is made and waited for
        LATE,  // a call is out, nobody waits for it
    };

    static void* threadEntry(void* line);
    void run();
    std::function<void()> awaitCall();
    void finish();
    bool awaitTurn(int64_t deadline) REQUIRES(mMutex);
    bool awaitReturn(int64_t deadline) REQUIRES(mMutex);
    bool startThread() REQUIRES(mMutex);

    const std::string mService;

    Mutex mMutex;  // guards what follows; a leaf, calls are made without it
    Condition mPosted;
    Condition mReturned;
    Condition mFree;
    State mState GUARDED_BY(mMutex) = State::FREE;
    std::function<void()> mCall GUARDED_BY(mMutex);  // until the thread takes it
    uint64_t mPostedCalls GUARDED_BY(mMutex) = 0;
    uint64_t mReturnedCalls GUARDED_BY(mMutex) = 0;
    bool mHasThread GUARDED_BY(mMutex) = false;
    bool mEnds GUARDED_BY(mMutex) = false;
};

bool PatientCaller::Line::perform(std::function<void()> call, int64_t deadline) {
    Mutex::Autolock lock(mMutex);
    if (!awaitTurn(deadline) || !startThread()) {
        return false;
    }
    mState = State::BUSY;
    mCall = std::move(call);
    ++mPostedCalls;
    mPosted.signal();
    return awaitReturn(deadline);
}

bool PatientCaller::Line::awaitTurn(int64_t deadline) {
    while (mState == State::BUSY) {
        const int64_t left = deadline - monotonicNanos();
        if (left <= 0) {
            return false;
        }
        mFree.waitRelative(mMutex, left);
    }
    return mState == State::FREE;
}

bool PatientCaller::Line::awaitReturn(int64_t deadline) {
    const uint64_t number = mPostedCalls;
    while (mReturnedCalls < number) {
        const int64_t left = deadline - monotonicNanos();
        if (left <= 0) {
            mState = State::LATE;
            mFree.broadcast();
            KLOGE("%s does not answer, it counts as absent until it does", mService.c_str());
            return false;
        }
        mReturned.waitRelative(mMutex, left);
    }
    return true;
}

bool PatientCaller::Line::startThread() {
    if (mHasThread) {
        return true;
    }
    auto owned = std::make_unique<std::shared_ptr<Line>>(shared_from_this());
    pthread_t thread;
    const int error = pthread_create(&thread, nullptr, threadEntry, owned.get());
    if (error != 0) {
        KLOGE("no thread to call %s: %s", mService.c_str(), strerror(error));
        return false;
    }
    (void)owned.release();  // the thread's
    pthread_detach(thread);
    mHasThread = true;
    return true;
}

void* PatientCaller::Line::threadEntry(void* line) {
    pthread_setname_np(pthread_self(), kThreadName);
    const std::unique_ptr<std::shared_ptr<Line>> self(static_cast<std::shared_ptr<Line>*>(line));
    (*self)->run();
    return nullptr;
}

void PatientCaller::Line::run() {
    while (std::function<void()> call = awaitCall()) {
        call();
        call = nullptr;  // what it holds is released before anyone goes on
        finish();
    }
}

std::function<void()> PatientCaller::Line::awaitCall() {
    Mutex::Autolock lock(mMutex);
    while (mCall == nullptr && !mEnds) {
        mPosted.wait(mMutex);
    }
    std::function<void()> call;
    call.swap(mCall);
    return call;
}

void PatientCaller::Line::finish() {
    Mutex::Autolock lock(mMutex);
    if (mState == State::LATE) {
        KLOGI("%s is asked again, its call has returned", mService.c_str());
    }
    mState = State::FREE;
    ++mReturnedCalls;
    mReturned.broadcast();  // a caller whose call returned before may still be waking up
    mFree.signal();
}

void PatientCaller::Line::end() {
    Mutex::Autolock lock(mMutex);
    mEnds = true;
    mPosted.signal();
}

PatientCaller::PatientCaller(std::string service)
      : mLine(std::make_shared<Line>(std::move(service))) {}

PatientCaller::~PatientCaller() {
    mLine->end();
}

bool PatientCaller::perform(std::function<void()> call) {
    return mLine->perform(std::move(call), monotonicNanos() + kPatience);
}

}  // namespace kelvo
