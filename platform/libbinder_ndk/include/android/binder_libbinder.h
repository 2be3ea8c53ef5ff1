#pragma once

#include <android/binder_ibinder.h>
#include <binder/IBinder.h>

/** The same binder as the C++ library knows it; null for null. */
android::sp<android::IBinder> AIBinder_toPlatformBinder(AIBinder* binder);

/** The one AIBinder of this binder, with a strong reference that the caller owns; null for null. */
AIBinder* AIBinder_fromPlatformBinder(const android::sp<android::IBinder>& binder);
