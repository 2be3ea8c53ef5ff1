#pragma once

namespace android {

/**
 * Declares that this process uses no binder driver: all its binders are local ones. None is opened
 * from then on, `ProcessState::startThreadPool` starts no thread, `IPCThreadState::joinThreadPool`
 * never returns, and there is no context object. To be called before anything opens the driver: it
 * ends the process otherwise. May be called again. Thread-safe.
 */
void runWithoutDriver();

}  // namespace android
