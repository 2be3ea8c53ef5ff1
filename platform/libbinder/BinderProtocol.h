#pragma once

// The binder headers name the driver's structures as members of the namespace android, the
// kernel's header as global ones. What that header includes itself must come first, outside.
#include <linux/ioctl.h>
#include <linux/types.h>

#undef B_PACK_CHARS  // <binder/IBinder.h> has the same definition for those without this header

namespace android {
#include <linux/android/binder.h>
}  // namespace android
