#pragma once

#include <android/hidl/base/1.0/IBase.h>

#include <string>

#include "sim/services/MortalBinder.h"

namespace sim {

/**
 * A service's binder under its name in the service manager. In a process without a driver its end
 * is the death of the service; with one only the end of the process is. Throws std::runtime_error
 * when it is refused.
 */
class PublishedBinder {
  public:
    PublishedBinder(const std::string& name, const android::sp<android::IBinder>& binder);
    ~PublishedBinder();
    PublishedBinder(const PublishedBinder&) = delete;
    PublishedBinder& operator=(const PublishedBinder&) = delete;

  private:
    const std::string mName;
    android::sp<MortalBinder> mRelay;
};

/** The same for the instance "default" of a HIDL interface. */
class PublishedHidl : public PublishedBinder {
  public:
    PublishedHidl(const char* descriptor, const android::sp<android::hidl::base::V1_0::IBase>& hal);
};

}  // namespace sim
