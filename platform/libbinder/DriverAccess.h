#pragma once

#include "BinderDriver.h"

/** The one driver of this process. All functions are thread-safe. */
namespace android {

/** How many threads the driver may ask for unless the process says: Android's number. */
constexpr uint32_t kDefaultMaxThreads = 15;

/** Opens the driver at first need; ends the process when none can be had. Null when driverless. */
BinderDriver* binderDriver();

/** The same, but null, and why in `error`, when none can be had. */
BinderDriver* tryBinderDriver(std::string* error);

/** The driver when it is open already, else null. */
BinderDriver* openedDriver();

/** Whether runWithoutDriver() was called. */
bool isDriverless();

/** How many threads the driver may ask for; told to it when it opens, or at once when it is open.
 */
status_t setDriverMaxThreads(uint32_t count);

/** Repeats BinderDriver::writeRead after signals. -EBADF without a driver. */
status_t exchangeWithDriver(binder_write_read* exchange, bool readsNext = false);

/** Whether a status of an exchange says that there will never be another one. */
bool isDriverGone(status_t status);

}  // namespace android
