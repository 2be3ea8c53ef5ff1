package android.os;

import android.os.ConnectionInfo;
import android.os.IClientCallback;
import android.os.IServiceCallback;
import android.os.ServiceDebugInfo;

/**
 * The names of services. Methods stand in the order of Android 13: their place is their code, and
 * other binder libraries call them by it.
 */
interface IServiceManager {
    const int DUMP_FLAG_PRIORITY_CRITICAL = 1;
    const int DUMP_FLAG_PRIORITY_HIGH = 2;
    const int DUMP_FLAG_PRIORITY_NORMAL = 4;
    const int DUMP_FLAG_PRIORITY_DEFAULT = 8;
    const int DUMP_FLAG_PRIORITY_ALL = 15;
    const int DUMP_FLAG_PROTO = 16;

    /** Null when there is none; a service that can be started on demand would be started. */
    @nullable IBinder getService(@utf8InCpp String name);

    /** Null when there is none. */
    @nullable IBinder checkService(@utf8InCpp String name);

    /** Replaces a service of the same name; `dumpPriority` is a set of DUMP_FLAG_. */
    void addService(@utf8InCpp String name, @nullable IBinder service, boolean allowIsolated,
            int dumpPriority);

    /** Sorted names of the services with one of these dump priorities. */
    @utf8InCpp String[] listServices(int dumpPriority);

    /** The callback hears of each registration under the name, and at once of a present one. */
    void registerForNotifications(@utf8InCpp String name, IServiceCallback callback);

    void unregisterForNotifications(@utf8InCpp String name, IServiceCallback callback);

    /** Whether the device's manifest promises the service. */
    boolean isDeclared(@utf8InCpp String name);

    /** The instances of an interface that the device's manifest promises. */
    @utf8InCpp String[] getDeclaredInstances(@utf8InCpp String iface);

    /** The APEX that a declared service comes from, null when it comes from none. */
    @nullable @utf8InCpp String updatableViaApex(@utf8InCpp String name);

    /** Where on the network a declared service is served; null when it is a local one. */
    @nullable ConnectionInfo getConnectionInfo(@utf8InCpp String name);

    /** The callback hears when the first client of the service comes and the last one goes. */
    void registerClientCallback(@utf8InCpp String name, IBinder service, IClientCallback callback);

    /** Takes the name away when the service has no clients. */
    void tryUnregisterService(@utf8InCpp String name, IBinder service);

    /** All services and who serves them. */
    ServiceDebugInfo[] getServiceDebugInfo();
}
