#pragma once

#include <memory>
#include <string>

#include "BinderDriver.h"

namespace android {

/** The driver of a process that names no other; which one that is, is chosen when it is opened. */
constexpr char kUsualDriver[] = "/dev/binder";

/**
 * Opens the driver that a process has named. The usual one is the kernel's or the hub's as
 * KELVO_BINDER ("kernel" or "hub") says; without it the kernel's when its device opens, else the
 * hub's at its default socket. Any other name is a device of the kernel's. Null, and why in
 * `error`, when there is none.
 */
std::unique_ptr<BinderDriver> openBinderDriver(const std::string& name, std::string* error);

}  // namespace android
