#include "sim/services/PublishedBinder.h"

#include <binder_linux/LocalServiceManager.h>
#include <hidl_linux/ServiceManagement.h>

#include <stdexcept>

namespace sim {

using android::String16;

PublishedBinder::PublishedBinder(const std::string& name,
                                 const android::sp<android::IBinder>& binder)
      : mName(name), mRelay(new RelayBinder(binder)) {
    const auto status =
            android::defaultServiceManager()->addService(String16(name.c_str()), mRelay);
    if (status != android::OK) {
        throw std::runtime_error("the service manager refuses the service: " + name);
    }
}

PublishedBinder::~PublishedBinder() {
    // Gone from its list first: who hears of the death and looks for the service does not find it.
    auto* const manager =
            dynamic_cast<android::LocalServiceManager*>(android::defaultServiceManager().get());
    if (manager != nullptr) {
        manager->removeService(String16(mName.c_str()));
    }
    mRelay->die();
}

PublishedHidl::PublishedHidl(const char* descriptor,
                             const android::sp<android::hidl::base::V1_0::IBase>& hal)
      : PublishedBinder(android::hardware::details::serviceName(descriptor, "default"),
                        hal->_hidl_binder()) {}

}  // namespace sim
