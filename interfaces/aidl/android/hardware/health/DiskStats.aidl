package android.hardware.health;

/** Counters of a disk since it started, as the kernel has them. */
@VintfStability
parcelable DiskStats {
    long reads = 0;
    long readMerges = 0;
    long readSectors = 0;
    long readTicks = 0;
    long writes = 0;
    long writeMerges = 0;
    long writeSectors = 0;
    long writeTicks = 0;
    long ioInFlight = 0;
    long ioTicks = 0;
    long ioInQueue = 0;
}
