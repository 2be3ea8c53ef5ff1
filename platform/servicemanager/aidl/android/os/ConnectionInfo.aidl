package android.os;

/** Where on the network a service is served. */
parcelable ConnectionInfo {
    @utf8InCpp String ipAddress;
    int port;
}
