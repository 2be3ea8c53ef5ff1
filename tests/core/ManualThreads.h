#pragma once

#include <utils/Looper.h>

#include <atomic>
#include <cstdint>

/**
 * The daemon's clocks and threads as a test moves them: the body of "work" runs on the starter's
 * thread, periodic loops never run, and both clocks stand still until they are set. One a program.
 */
struct ManualThreads {
    /** What startWorkThread() returns; other than 0 the body is not run. */
    static inline int startError = 0;
    /** The message loop's, once joinLoop() has handed it over. */
    static inline android::sp<android::Looper> looper;
    static inline std::atomic<int64_t> nowNs{1'000'000'000};

    static void setMilliseconds(int64_t milliseconds) { nowNs = milliseconds * 1'000'000; }
    /** Handles all messages that are due. */
    static void handleDue();
};
