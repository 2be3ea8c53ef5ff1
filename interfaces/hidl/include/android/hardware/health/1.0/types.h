#pragma once

#include <hidl/HidlSupport.h>

#include <cstdint>

namespace android::hardware::health::V1_0 {

enum class BatteryStatus : int32_t {
    UNKNOWN = 1,
    CHARGING = 2,
    DISCHARGING = 3,
    NOT_CHARGING = 4,
    FULL = 5,
};

enum class BatteryHealth : int32_t {
    UNKNOWN = 1,
    GOOD = 2,
    OVERHEAT = 3,
    DEAD = 4,
    OVER_VOLTAGE = 5,
    UNSPECIFIED_FAILURE = 6,
    COLD = 7,
};

/** Chargers and battery at one moment. */
struct HealthInfo {
    bool chargerAcOnline = false;
    bool chargerUsbOnline = false;
    bool chargerWirelessOnline = false;
    int32_t maxChargingCurrent = 0;  // µA
    int32_t maxChargingVoltage = 0;  // µV
    BatteryStatus batteryStatus{};
    BatteryHealth batteryHealth{};
    bool batteryPresent = false;
    int32_t batteryLevel = 0;          // percent
    int32_t batteryVoltage = 0;        // mV
    int32_t batteryTemperature = 0;    // tenths of a °C
    int32_t batteryCurrent = 0;        // µA, positive into the battery
    int32_t batteryCycleCount = 0;     // full charges so far
    int32_t batteryFullCharge = 0;     // µAh
    int32_t batteryChargeCounter = 0;  // µAh left
    hidl_string batteryTechnology;

    bool operator==(const HealthInfo&) const = default;
};

}  // namespace android::hardware::health::V1_0
