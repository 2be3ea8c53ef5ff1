#pragma once

#include <android/hidl/base/1.0/IBase.h>
#include <hidl_linux/HidlString.h>

namespace android::hidl::manager::V1_0 {

/** Whom registrations of HIDL services are told; an object of this process. */
struct IServiceNotification : public base::V1_0::IBase {
    /** `preexisting` is always false: the service manager does not say. */
    virtual hardware::Return<void> onRegistration(const hardware::hidl_string& fqName,
                                                  const hardware::hidl_string& name,
                                                  bool preexisting) = 0;
};

}  // namespace android::hidl::manager::V1_0
