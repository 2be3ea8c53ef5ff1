package android.hardware.health;

import android.hardware.health.DiskStats;
import android.hardware.health.HealthInfo;
import android.hardware.health.IHealthInfoCallback;
import android.hardware.health.StorageInfo;

/**
 * Battery, charger and storage, as version 1 of Android's interface has them. Methods stand in its
 * order: their place is their code. What a device cannot tell is an unsupported operation.
 */
@VintfStability
interface IHealth {
    /** Service-specific errors. */
    const int STATUS_UNKNOWN = 2;
    const int STATUS_CALLBACK_DIED = 4;

    /** The callback is told at once, and from then on whenever something changes. */
    void registerCallback(in IHealthInfoCallback callback);
    void unregisterCallback(in IHealthInfoCallback callback);

    /** Tells all callbacks now. */
    void update();

    int getChargeCounterUah();
    int getCurrentNowMicroamps();
    int getCurrentAverageMicroamps();
    /** Percent. */
    int getCapacity();
    long getEnergyCounterNwh();
    /** A BatteryStatus. */
    int getChargeStatus();
    StorageInfo[] getStorageInfo();
    DiskStats[] getDiskStats();
    HealthInfo getHealthInfo();
}
