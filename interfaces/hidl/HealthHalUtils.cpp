#define LOG_TAG "HealthHalUtils"

#include <healthhalutils/HealthHalUtils.h>

#include <log/log.h>

namespace android::hardware::health::V2_0 {

sp<IHealth> get_health_service() {
    sp<IHealth> health = IHealth::getService("default");
    ALOGI_IF(health == nullptr, "no health service: %s/default is not there", IHealth::descriptor);
    return health;
}

}  // namespace android::hardware::health::V2_0
