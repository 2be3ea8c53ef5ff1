#pragma once

#include <binder/IServiceManager.h>
#include <utils/Condition.h>
#include <utils/Mutex.h>

#include <map>
#include <set>
#include <string>
#include <vector>

namespace android {

/**
 * The services of one process that has no driver, see installLocalServiceManager(). Anyone may add
 * and get anything. Thread-safe.
 */
class LocalServiceManager : public IServiceManager {
  public:
    LocalServiceManager();
    ~LocalServiceManager() override;

    /** Null when there is none. Never blocks: nobody else could add it meanwhile. */
    sp<IBinder> getService(const String16& name) const override;
    sp<IBinder> checkService(const String16& name) const override;

    /**
     * Replaces a service of the same name. Refuses a null service, and a name that is empty, longer
     * than 127 characters or not of letters, digits and "_-./", with EX_ILLEGAL_ARGUMENT.
     * `allowIsolated` has no effect: there are no other callers.
     */
    status_t addService(const String16& name, const sp<IBinder>& service,
                        bool allowIsolated = false,
                        int dumpsysFlags = DUMP_FLAG_PRIORITY_DEFAULT) override;

    /** Names of the services with one of these dump priorities, sorted. */
    Vector<String16> listServices(int dumpsysFlags = DUMP_FLAG_PRIORITY_ALL) override;

    /** Blocks until another thread adds the service. */
    sp<IBinder> waitForService(const String16& name) override;

    bool isDeclared(const String16& name) override;

    /** Notices come on the thread that registers the service, before that returns. */
    status_t registerForNotifications(const String16& name,
                                      const sp<LocalRegistrationCallback>& callback) override;
    status_t unregisterForNotifications(const String16& name,
                                        const sp<LocalRegistrationCallback>& callback) override;

    /** As an entry of a device's manifest does: `isDeclared` holds from then on. */
    void declareService(const String16& name);

    /** As when the process of a service dies. Returns false when there was none. */
    bool removeService(const String16& name);

  protected:
    IBinder* onAsBinder() override;

  private:
    struct Entry {
        sp<IBinder> binder;
        int dumpFlags = 0;
    };
    sp<IBinder> findLocked(const std::string& name) const REQUIRES(mLock);

    // Guards what follows; innermost lock, no binder is called or released while it is held.
    mutable Mutex mLock;
    Condition mAdded;
    std::map<std::string, Entry> mServices GUARDED_BY(mLock);
    std::set<std::string> mDeclared GUARDED_BY(mLock);
    std::map<std::string, std::vector<sp<LocalRegistrationCallback>>> mNotified GUARDED_BY(mLock);
};

/**
 * Lets the process do without a binder driver: `defaultServiceManager()` is a local one, no driver
 * is opened, and no binder threads are started. The first call decides which manager it is,
 * `manager` or when that is null a new one; every call returns that one. The first must come before
 * anything else asks for the service manager or the driver, or the program ends.
 */
sp<LocalServiceManager> installLocalServiceManager(
        const sp<LocalServiceManager>& manager = nullptr);

}  // namespace android
