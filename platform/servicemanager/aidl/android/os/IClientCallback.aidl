package android.os;

/** Told by the service manager whether anyone uses a service. */
oneway interface IClientCallback {
    void onClients(IBinder registered, boolean hasClients);
}
