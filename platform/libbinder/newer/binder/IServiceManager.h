#pragma once

#include <binder/IInterface.h>
#include <utils/String16.h>
#include <utils/Vector.h>

namespace android {

/**
 * The service manager as Android 13 declares it, which tells of registrations; the header that
 * stands beside the others is older. What the daemon and its tools do not use is left out.
 * Thread-safe.
 */
class IServiceManager : public IInterface {
  public:
    virtual const String16& getInterfaceDescriptor() const;

    IServiceManager();
    ~IServiceManager() override;

    static const int DUMP_FLAG_PRIORITY_CRITICAL = 1 << 0;
    static const int DUMP_FLAG_PRIORITY_HIGH = 1 << 1;
    static const int DUMP_FLAG_PRIORITY_NORMAL = 1 << 2;
    static const int DUMP_FLAG_PRIORITY_DEFAULT = 1 << 3;
    static const int DUMP_FLAG_PRIORITY_ALL = DUMP_FLAG_PRIORITY_CRITICAL |
                                              DUMP_FLAG_PRIORITY_HIGH | DUMP_FLAG_PRIORITY_NORMAL |
                                              DUMP_FLAG_PRIORITY_DEFAULT;
    static const int DUMP_FLAG_PROTO = 1 << 4;

    /** The service; waits some seconds for one that is not there. */
    virtual sp<IBinder> getService(const String16& name) const = 0;
    /** The same at once. */
    virtual sp<IBinder> checkService(const String16& name) const = 0;
    virtual status_t addService(const String16& name, const sp<IBinder>& service,
                                bool allowIsolated = false,
                                int dumpsysFlags = DUMP_FLAG_PRIORITY_DEFAULT) = 0;
    virtual Vector<String16> listServices(int dumpsysFlags = DUMP_FLAG_PRIORITY_ALL) = 0;
    /** The service; waits for it without a limit. */
    virtual sp<IBinder> waitForService(const String16& name) = 0;
    /** Whether the device's manifest names it. */
    virtual bool isDeclared(const String16& name) = 0;

    /** Whom registrations are told. */
    class LocalRegistrationCallback : public virtual RefBase {
      public:
        virtual void onServiceRegistration(const String16& instance, const sp<IBinder>& binder) = 0;
        ~LocalRegistrationCallback() override {}
    };

    /**
     * Tells each registration under the name from now on, and the present one at once. From another
     * process it comes on a binder thread.
     */
    virtual status_t registerForNotifications(const String16& name,
                                              const sp<LocalRegistrationCallback>& callback) = 0;
    virtual status_t unregisterForNotifications(const String16& name,
                                                const sp<LocalRegistrationCallback>& callback) = 0;
};

sp<IServiceManager> defaultServiceManager();

/** Decides, before anything asks for it, which service manager the process has. */
void setDefaultServiceManager(const sp<IServiceManager>& sm);

template <typename Interface>
status_t getService(const String16& name, sp<Interface>* service) {
    const sp<IServiceManager> manager = defaultServiceManager();
    if (manager != nullptr) {
        *service = interface_cast<Interface>(manager->getService(name));
        if (*service != nullptr) {
            return OK;
        }
    }
    return NAME_NOT_FOUND;
}

}  // namespace android
