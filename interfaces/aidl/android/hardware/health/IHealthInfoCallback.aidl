package android.hardware.health;

import android.hardware.health.HealthInfo;

oneway interface IHealthInfoCallback {
    void healthInfoChanged(in HealthInfo info);
}
