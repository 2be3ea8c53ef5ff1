package android.hardware.health;

import android.hardware.health.DiskStats;
import android.hardware.health.StorageInfo;

/** State of charger, battery and storage. Fields stand in the order in which they travel. */
@VintfStability
parcelable HealthInfo {
    boolean chargerAcOnline = false;
    boolean chargerUsbOnline = false;
    boolean chargerWirelessOnline = false;
    boolean chargerDockOnline = false;
    int maxChargingCurrentMicroamps = 0;
    int maxChargingVoltageMicrovolts = 0;
    /** BatteryStatus: 1 unknown, 2 charging, 3 discharging, 4 not charging, 5 full. */
    int batteryStatus = 1;
    /** BatteryHealth: 1 unknown, 2 good, 3 overheat, 4 dead, 5 over voltage, 6 failed, 7 cold. */
    int batteryHealth = 1;
    boolean batteryPresent = false;
    /** Percent. */
    int batteryLevel = 0;
    int batteryVoltageMillivolts = 0;
    int batteryTemperatureTenthsCelsius = 0;
    int batteryCurrentMicroamps = 0;
    int batteryCycleCount = 0;
    int batteryFullChargeUah = 0;
    int batteryChargeCounterUah = 0;
    String batteryTechnology;
    int batteryCurrentAverageMicroamps = 0;
    DiskStats[] diskStats;
    StorageInfo[] storageInfos;
    /** BatteryCapacityLevel: -1 unsupported, 0 unknown, 1 critical, 2 low, 3 normal, 4 high, 5 full. */
    int batteryCapacityLevel = 0;
    /** -1 when it is not charging, or the device cannot tell. */
    long batteryChargeTimeToFullNowSeconds = 0;
    int batteryFullChargeDesignCapacityUah = 0;
}
