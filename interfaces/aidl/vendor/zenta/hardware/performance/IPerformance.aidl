package vendor.zenta.hardware.performance;

/** What the vendor's performance service tells of the processor. */
@VintfStability
interface IPerformance {
    /**
     * Energy of each thread since the last call: a line for a thread, with process id, thread id,
     * power and name separated by tab characters. Empty when there is nothing to tell.
     */
    String readCpuTaskstats();
}
