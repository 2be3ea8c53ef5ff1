#define LOG_TAG "ServiceManagement"

#include <hidl_linux/ServiceManagement.h>

#include <binder/IServiceManager.h>
#include <hidl_linux/HidlProxy.h>
#include <log/log.h>
#include <unistd.h>

#include <algorithm>

namespace android::hardware::details {

using hidl::base::V1_0::IBase;
using hidl::manager::V1_0::IServiceNotification;

namespace {

constexpr useconds_t kRetryPause = 10000;  // µs

bool waitsFor(const String16& name, Wait wait) {
    return wait == Wait::kWhenDeclared && defaultServiceManager()->isDeclared(name);
}

sp<IBinder> findBinder(const String16& name, bool waits) {
    const sp<IServiceManager> manager = defaultServiceManager();
    return waits ? manager->waitForService(name) : manager->checkService(name);
}

/** Tells a registration in HIDL's words. */
class Notice : public IServiceManager::LocalRegistrationCallback {
  public:
    Notice(const char* descriptor, const std::string& instance,
           const sp<IServiceNotification>& notification)
          : mDescriptor(descriptor), mInstance(instance), mNotification(notification) {}

    void onServiceRegistration(const String16&, const sp<IBinder>&) override {
        // Whether it was there before, the service manager does not say.
        mNotification->onRegistration(mDescriptor, mInstance, false).isOk();
    }

  private:
    const std::string mDescriptor;
    const std::string mInstance;
    const sp<IServiceNotification> mNotification;
};

Return<bool> speaksInterface(const sp<IBinder>& binder, const char* descriptor) {
    sp<IBase> object = localObject(binder);
    if (object == nullptr) {
        object = new HidlProxy<IBase>(binder);
    }
    return hasInterface(object, descriptor);
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
    if (defaultServiceManager() == nullptr) {
        return nullptr;
    }
    const String16 name16(name.c_str());
    const bool waits = waitsFor(name16, wait);
    sp<IBinder> binder = findBinder(name16, waits);
    if (binder == nullptr) {
        return nullptr;
    }
    Return<bool> speaks = speaksInterface(binder, descriptor);
    // The service manager hears of a death no sooner than others do: who waits for the next service
    // may be given the one that has just died.
    while (waits && speaks.isDeadObject()) {
        usleep(kRetryPause);
        binder = findBinder(name16, waits);
        if (binder == nullptr) {
            return nullptr;
        }
        speaks = speaksInterface(binder, descriptor);
    }
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

bool notifyOfService(const char* descriptor, const std::string& instance,
                     const sp<IServiceNotification>& notification) {
    const sp<IServiceManager> manager = defaultServiceManager();
    if (manager == nullptr || notification == nullptr) {
        return false;
    }
    const std::string name = serviceName(descriptor, instance);
    return manager->registerForNotifications(String16(name.c_str()),
                                             new Notice(descriptor, instance, notification)) == OK;
}

}  // namespace android::hardware::details
