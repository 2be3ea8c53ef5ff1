#pragma once

#include "BinderDriver.h"

/** The one driver of this process. All functions are thread-safe. */
namespace android {

/** Opens the driver at first need; ends the process when none can be had. Null when driverless. */
BinderDriver* binderDriver();

/** The driver when it is open already, else null. */
BinderDriver* openedDriver();

/** Whether runWithoutDriver() was called. */
bool isDriverless();

/** How many threads the driver may ask for; told to it when it opens, or at once when it is open.
 */
status_t setDriverMaxThreads(uint32_t count);

/** No thread of the process reaches the driver any more; every exchange fails with -EBADF. */
void abandonDriver();

/** Repeats BinderDriver::writeRead after signals. -EBADF without a driver. */
status_t exchangeWithDriver(binder_write_read* exchange, bool readsNext = false);

/** Whether a status of an exchange says that there will never be another one. */
bool isDriverGone(status_t status);

}  // namespace android
