#pragma once

#include <android/binder_status.h>
#include <binder/Status.h>

/** See AStatus. A status is never changed once it is made. */
struct AStatus {
    android::binder::Status status;
};
