package android.os;

/** Who serves a name. */
parcelable ServiceDebugInfo {
    @utf8InCpp String name;
    int debugPid;
}
