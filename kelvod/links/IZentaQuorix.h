#pragma once

#include <binder/IInterface.h>
#include <binder/Status.h>

#include <cstdint>

namespace kelvo {

/** The usage-statistics engine, which the service manager knows as "quorix". */
class IZentaQuorix : public android::IInterface {
  public:
    DECLARE_META_INTERFACE(ZentaQuorix)

    enum Transaction : uint32_t {
        REGISTER_MODULE_USAGE_LISTENER = 19,
        INFORM_THERMAL_EVENT = 22,
    };
    /** Events of informThermalEvent(). */
    enum ThermalEvent : int32_t {
        START_REPORTING = 1,
        STOP_REPORTING = 2,
    };

    /** From now on `listener`, an IZentaQuorixModuleUsage, gets the reports. */
    virtual android::binder::Status registerModuleUsageListener(
            int32_t kind, const android::sp<android::IBinder>& listener, int32_t* result) = 0;
    virtual android::binder::Status informThermalEvent(int32_t event, int32_t* result) = 0;
};

/** The daemon's side. Any thread. */
class BpZentaQuorix : public android::BpInterface<IZentaQuorix> {
  public:
    explicit BpZentaQuorix(const android::sp<android::IBinder>& remote)
          : android::BpInterface<IZentaQuorix>(remote) {}

    android::binder::Status registerModuleUsageListener(
            int32_t kind, const android::sp<android::IBinder>& listener, int32_t* result) override;
    android::binder::Status informThermalEvent(int32_t event, int32_t* result) override;
};

}  // namespace kelvo
