package android.hardware.health;

/** Wear of a storage device, as its standard defines it. */
@VintfStability
parcelable StorageInfo {
    /** Pre-end-of-life information. */
    int eol = 0;
    /** Estimates of used life time, of two kinds of memory. */
    int lifetimeA = 0;
    int lifetimeB = 0;
    String version;
}
