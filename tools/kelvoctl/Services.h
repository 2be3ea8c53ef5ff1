#pragma once

#include <binder/IServiceManager.h>

#include <string>

namespace kelvoctl {

/** The daemon's service. */
constexpr char kKelvo[] = "kelvo";

/** The phone's service manager. Throws Failure at once when there is none or no binder driver. */
android::sp<android::IServiceManager> serviceManager();

/** A service by its name. Throws Failure when it is not registered; does not wait for it. */
android::sp<android::IBinder> findService(const std::string& name);

android::String16 toString16(const std::string& text);

/** Throws the Failure that a transaction's status stands for; `call` is its code or name. */
void checkStatus(android::status_t status, const std::string& call);

}  // namespace kelvoctl
