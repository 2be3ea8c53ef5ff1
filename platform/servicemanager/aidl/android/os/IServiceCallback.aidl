package android.os;

/** Told by the service manager about a name. */
oneway interface IServiceCallback {
    void onRegistration(@utf8InCpp String name, IBinder binder);
}
