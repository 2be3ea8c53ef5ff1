#pragma once

#include <android/hidl/base/1.0/IBase.h>
#include <android/hidl/manager/1.0/IServiceNotification.h>

#include <string>
#include <string_view>

namespace android::hardware::details {

/** Whether a search may block. */
enum class Wait { kNever, kWhenDeclared };

/**
 * The name under which the service manager knows an instance of an interface:
 * "hidl/PACKAGE/VERSION/INTERFACE/INSTANCE", because "@" and ":" are not allowed there.
 */
std::string serviceName(std::string_view descriptor, std::string_view instance);

/**
 * The binder of an instance; null when there is none, it is gone, or it is of another interface,
 * which is logged. Thread-safe.
 */
sp<IBinder> findService(const char* descriptor, const std::string& instance, Wait wait);

/** OK or UNKNOWN_ERROR, which is logged. Thread-safe. */
status_t registerService(const char* descriptor, const std::string& instance,
                         const sp<IBinder>& binder);

/** False when the service manager refuses. Thread-safe. */
bool notifyOfService(const char* descriptor, const std::string& instance,
                     const sp<hidl::manager::V1_0::IServiceNotification>& notification);

}  // namespace android::hardware::details
