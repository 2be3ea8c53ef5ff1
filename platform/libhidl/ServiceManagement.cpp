#define LOG_TAG "ServiceManagement"

#include <hidl/ServiceManagement.h>

#include <binder/IServiceManager.h>
#include <hidl/HidlProxy.h>
#include <log/log.h>

#include <algorithm>

namespace android::hardware::details {

using hidl::base::V1_0::IBase;

namespace {

sp<IBinder> findBinder(const std::string& name, Wait wait) {
    const sp<IServiceManager> manager = defaultServiceManager();
    const String16 name16(name.c_str());
    if (manager == nullptr) {
        return nullptr;
    }
    const bool waits = wait == Wait::kWhenDeclared && manager->isDeclared(name16);
    return waits ? manager->waitForService(name16) : manager->checkService(name16);
}

}  // namespace

std::string serviceName(std::string_view descriptor, std::string_view instance) {
    const size_t version = descriptor.find('@');
    const size_t interface = descriptor.find("::");
    std::string name("hidl/");
    if (version == std::string_view::npos || interface == std::string_view::npos ||
        interface < version) {
        name.append(descriptor);
    } else {
        name.append(descriptor.substr(0, version)).append("/");
        name.append(descriptor.substr(version + 1, interface - version - 1)).append("/");
        name.append(descriptor.substr(interface + 2));
    }
    return name.append("/").append(instance);
}

sp<IBinder> findService(const char* descriptor, const std::string& instance, Wait wait) {
    const std::string name = serviceName(descriptor, instance);
    const sp<IBinder> binder = findBinder(name, wait);
    if (binder == nullptr) {
        return nullptr;
    }
    sp<IBase> object = localObject(binder);
    if (object == nullptr) {
        object = new HidlProxy<IBase>(binder);
    }
    const Return<bool> speaks = hasInterface(object, descriptor);
    if (!speaks.isOk() || !speaks) {
        ALOGE("the service %s does not answer as %s: %s", name.c_str(), descriptor,
              speaks.description().c_str());
        return nullptr;
    }
    return binder;
}

status_t registerService(const char* descriptor, const std::string& instance,
                         const sp<IBinder>& binder) {
    const std::string name = serviceName(descriptor, instance);
    const sp<IServiceManager> manager = defaultServiceManager();
    const status_t status =
            manager != nullptr ? manager->addService(String16(name.c_str()), binder) : NO_INIT;
    if (status != OK) {
        ALOGE("the service manager refuses the service %s: %d", name.c_str(), status);
    }
    return status == OK ? OK : UNKNOWN_ERROR;
}

}  // namespace android::hardware::details
