#pragma once

#include <android/os/IServiceCallback.h>
#include <android/os/IServiceManager.h>
#include <binder/IServiceManager.h>
#include <utils/Mutex.h>

#include <vector>

namespace android {

/**
 * The service manager of another process, which speaks the protocol of Android 13. A refused or
 * failed call counts as an absent service. Thread-safe.
 */
class ServiceManagerShim : public IServiceManager {
  public:
    explicit ServiceManagerShim(const sp<os::IServiceManager>& remote);

    /** Waits up to 5 s for a service that is not there, asking each 100 ms. */
    sp<IBinder> getService(const String16& name) const override;
    sp<IBinder> checkService(const String16& name) const override;

    /** The exception that the service manager answers (`binder::Status`), OK for none. */
    status_t addService(const String16& name, const sp<IBinder>& service, bool allowIsolated,
                        int dumpsysFlags) override;

    Vector<String16> listServices(int dumpsysFlags) override;

    /**
     * Waits for ever. The notice of the registration comes on a binder thread; in a process without
     * a thread pool the service is seen at the next of the checks that are made each second.
     */
    sp<IBinder> waitForService(const String16& name) override;

    bool isDeclared(const String16& name) override;

    /** UNKNOWN_ERROR when the service manager refuses or does not answer. */
    status_t registerForNotifications(const String16& name,
                                      const sp<LocalRegistrationCallback>& callback) override;
    status_t unregisterForNotifications(const String16& name,
                                        const sp<LocalRegistrationCallback>& callback) override;

  protected:
    IBinder* onAsBinder() override;

  private:
    /** A callback of this process, and what stands for it at the service manager. */
    struct Notified {
        String16 name;
        sp<LocalRegistrationCallback> callback;
        sp<os::IServiceCallback> remote;
    };

    const sp<os::IServiceManager> mRemote;
    Mutex mLock;  // innermost lock; guards what follows
    std::vector<Notified> mNotified GUARDED_BY(mLock);
};

}  // namespace android
