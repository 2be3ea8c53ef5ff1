#pragma once

#include <android/hardware/health/2.0/IHealth.h>

namespace android::hardware::health::V2_0 {

/**
 * The instance "default"; null, with a line in the log, when there is none. As
 * IHealth::getService() it waits for one that the device's manifest declares.
 */
sp<IHealth> get_health_service();

}  // namespace android::hardware::health::V2_0
