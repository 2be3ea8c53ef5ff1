package android.hardware.health;

import android.hardware.health.HealthInfo;

@VintfStability
oneway interface IHealthInfoCallback {
    void healthInfoChanged(in HealthInfo info);
}
