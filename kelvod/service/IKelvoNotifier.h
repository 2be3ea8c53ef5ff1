#pragma once

#include <binder/IInterface.h>

#include <string>

namespace kelvo {

/**
 * A client's listener, which the daemon calls. Each method waits for the client's answer; 0, or -1
 * when the call failed or the client answered with an exception.
 */
class IKelvoNotifier : public android::IInterface {
  public:
    DECLARE_META_INTERFACE(KelvoNotifier)

    enum Transaction : uint32_t {
        NOTIFY_THERMAL_STATUS = 3,
        NOTIFY_THERMAL_BROADCAST = 4,
        NOTIFY_AMBIENT_THERMAL = 5,
        NOTIFY_COMPONENT_HEAT = 6,
    };

    virtual int notifyThermalStatus(int status) = 0;
    /** `temp` in m°C, as everywhere here. */
    virtual int notifyThermalBroadCast(int level, int temp) = 0;
    /** `temp` in °C. */
    virtual int notifyAmbientThermal(int temp) = 0;
    virtual int notifyComponentHeat(int level, int temp, const std::string& detail) = 0;
};

/** The daemon's side. Any thread. */
class BpKelvoNotifier : public android::BpInterface<IKelvoNotifier> {
  public:
    explicit BpKelvoNotifier(const android::sp<android::IBinder>& remote)
          : android::BpInterface<IKelvoNotifier>(remote) {}

    int notifyThermalStatus(int status) override;
    int notifyThermalBroadCast(int level, int temp) override;
    int notifyAmbientThermal(int temp) override;
    int notifyComponentHeat(int level, int temp, const std::string& detail) override;
};

}  // namespace kelvo
