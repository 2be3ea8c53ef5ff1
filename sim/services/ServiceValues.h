#pragma once

#include <utils/Mutex.h>

#include <cstdint>
#include <string>
#include <type_traits>
#include <vector>

#include "sim/scenario/Scenario.h"

namespace sim {

/** Whether an action sets what a service answers, or makes one call back. */
template <typename T>
constexpr bool kIsServiceDeed =
        std::is_same_v<T, Health> || std::is_same_v<T, BatteryCurrent> ||
        std::is_same_v<T, TaskStats> || std::is_same_v<T, Panel> || std::is_same_v<T, Frames> ||
        std::is_same_v<T, Usage> || std::is_same_v<T, UsageBytes>;

/** What the services of the phone answer; before an action sets it all of it is 0 or empty. */
struct PhoneValues {
    Health health;
    int32_t batteryCurrent = 0;  // mA
    std::string taskStats;
    uint8_t panelMax = 0;
    uint8_t panelLevel = 0;
    int32_t frames = 0;

    /** Takes what `deed` sets; others change nothing. */
    void take(const Deed& deed);
    /** Actions that give these values to someone who has none. */
    std::vector<Deed> asDeeds() const;
};

/** Values that the scenario's thread sets and binder threads read. Thread-safe. */
class ServiceValues {
  public:
    PhoneValues get() const {
        android::Mutex::Autolock lock(mMutex);
        return mValues;
    }
    void take(const Deed& deed) {
        android::Mutex::Autolock lock(mMutex);
        mValues.take(deed);
    }

  private:
    mutable android::Mutex mMutex;  // guards the values; a leaf
    PhoneValues mValues GUARDED_BY(mMutex);
};

}  // namespace sim
