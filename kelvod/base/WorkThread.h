#pragma once

#include <utils/Looper.h>

namespace kelvo {

/**
 * Runs `body` on a new thread named "work". 0, or the error number with which the thread's creation
 * failed. A program that runs in virtual time links another definition of both functions.
 */
int startWorkThread(void* (*body)(void*));

/** Polls `looper` for ever, with a debug line after each return. Called on the thread "work". */
void pollForever(const android::sp<android::Looper>& looper);

}  // namespace kelvo
