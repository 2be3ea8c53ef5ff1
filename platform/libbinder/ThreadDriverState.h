#pragma once

#include <cstdint>

namespace android {

/**
 * What the calling thread's IPCThreadState needs beside the members that AOSP's header gives it.
 * Plain data, so that it is there until the very end of the thread.
 */
struct ThreadDriverState {
    bool looper = false;       ///< in joinThreadPool: reads again soon, whatever it does now
    bool polled = false;       ///< its commands are read when someone polls: returns to their code
    bool flushing = false;     ///< handing over commands; not again from within
    uint32_t openReplies = 0;  ///< replies handed over whose completion has not been read
};

ThreadDriverState& threadDriverState();

}  // namespace android
