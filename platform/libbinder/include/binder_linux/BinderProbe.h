#pragma once

#include <string>

/**
 * For programs that would rather say what is missing than end in a failed assertion or wait for it.
 * Both functions say in `why` what is wrong and where. Thread-safe.
 */
namespace android {

/**
 * Opens the process's binder driver, if that has not been done, and says whether there is one:
 * without one its first use ends the process.
 */
bool isBinderDriverReachable(std::string* why);

/** Whether `defaultServiceManager()` would come back at once: it waits for a service manager. */
bool isServiceManagerReachable(std::string* why);

}  // namespace android
