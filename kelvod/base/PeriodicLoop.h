#pragma once

#include <utils/Condition.h>
#include <utils/Mutex.h>

#include <cstdint>
#include <string>

namespace kelvo {

/**
 * A thread that makes a pass, then waits for a monotonic deadline that a wake-up cuts short.
 *
 * The schedule is drift-free: each deadline is the one before plus the interval; only a wake-up
 * starts it anew from "now". Shared by the fitting loop and the heat monitor. A program that runs
 * in virtual time links another definition of this class.
 */
class PeriodicLoop {
  public:
    /** Why a loop ended. */
    enum class End {
        STOPPED,      // runPass() said so
        CLOCK_ERROR,  // the monotonic clock could not be read
        WAIT_ERROR,   // the timed wait was refused (EINVAL)
    };

    /** What the owner does; every call comes on the loop's thread, without the loop's mutex. */
    class Client {
      public:
        virtual ~Client() = default;
        /** The thread runs; the first deadline is taken after this returns. */
        virtual void onThreadStart() {}
        /** One pass. False ends the loop. */
        virtual bool runPass() = 0;
        /** A wake-up cut the wait short. False ends the loop. */
        virtual bool onWoken(int32_t intervalSeconds) = 0;
        /** The deadline has come. False ends the loop. */
        virtual bool onTimeout() = 0;
        /** The loop has ended; `error` is an errno value, 0 with End::STOPPED. */
        virtual void onThreadEnd(End end, int error) = 0;
    };

    /** `name` is the thread's (at most 15 bytes); `client` must outlive the loop. */
    PeriodicLoop(const char* name, Client* client, int32_t intervalSeconds);
    PeriodicLoop(const PeriodicLoop&) = delete;
    PeriodicLoop& operator=(const PeriodicLoop&) = delete;

    /** Starts the thread. 0, or the error number with which its creation failed. */
    int start();

    /** Cuts the present wait short; lost when the loop is in a pass. Thread-safe, unlocked. */
    void wake();

    /** Guards the interval, and whatever else an owner puts under it. A leaf: taken last. */
    android::Mutex& mutex() RETURN_CAPABILITY(mMutex) { return mMutex; }
    int32_t intervalLocked() const REQUIRES(mMutex) { return mInterval; }
    void setIntervalLocked(int32_t seconds) REQUIRES(mMutex) { mInterval = seconds; }

  private:
    static void* threadEntry(void* loop);
    End run(int* error);
    int wait(int64_t* deadline, int32_t* interval);
    int waitUntil(int64_t deadline) REQUIRES(mMutex);

    const std::string mName;
    Client* const mClient;
    android::Mutex mMutex;  // guards what follows
    android::Condition mCondition;
    int32_t mInterval GUARDED_BY(mMutex);    // s
    bool mWoken GUARDED_BY(mMutex) = false;  // since the present wait began
};

}  // namespace kelvo
