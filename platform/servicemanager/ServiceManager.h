#pragma once

#include <android/os/BnServiceManager.h>

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace android {

/**
 * The names of a phone's services. Anyone may ask for a service and list them; what apps may not do
 * (add one) is refused with EX_SECURITY, a bad name with EX_ILLEGAL_ARGUMENT, as on Android. A name
 * is gone when the process that serves it dies, and so are the callbacks of a dead process.
 * An app may have kMostCallbacksOfApp of them for registrations, in all its processes.
 *
 * Callers are those of the transaction at hand. Not thread-safe: its process has one thread.
 */
class ServiceManager : public os::BnServiceManager, public IBinder::DeathRecipient {
  public:
    /** How many strong references a service has, the manager's own among them; negative: unknown.
     */
    using CountReferences = std::function<ssize_t(const sp<IBinder>& service)>;

    /** `countReferences` asks the driver unless a test says otherwise. */
    explicit ServiceManager(CountReferences countReferences = referencesInDriver);

    /** Null for a caller in an isolated process unless the service allows those. */
    binder::Status getService(const std::string& name, sp<IBinder>* service) override;
    /** The same: services that start on demand do not exist here. */
    binder::Status checkService(const std::string& name, sp<IBinder>* service) override;

    binder::Status addService(const std::string& name, const sp<IBinder>& service,
                              bool allowIsolated, int32_t dumpPriority) override;
    binder::Status listServices(int32_t dumpPriority, std::vector<std::string>* names) override;

    binder::Status registerForNotifications(const std::string& name,
                                            const sp<os::IServiceCallback>& callback) override;
    /** EX_ILLEGAL_STATE when it is not registered under this name. */
    binder::Status unregisterForNotifications(const std::string& name,
                                              const sp<os::IServiceCallback>& callback) override;

    binder::Status isDeclared(const std::string& name, bool* declared) override;
    binder::Status getDeclaredInstances(const std::string& interface,
                                        std::vector<std::string>* instances) override;
    /** Null: there are no APEXes here. */
    binder::Status updatableViaApex(const std::string& name,
                                    std::unique_ptr<std::string>* apex) override;
    /** Null: all services are local ones. */
    binder::Status getConnectionInfo(const std::string& name,
                                     std::unique_ptr<os::ConnectionInfo>* info) override;

    /**
     * Tells the callback from the next checkClients() on when clients come and go. For the process
     * that serves the name, with the binder that it registered.
     */
    binder::Status registerClientCallback(const std::string& name, const sp<IBinder>& service,
                                          const sp<os::IClientCallback>& callback) override;
    /**
     * Takes the name away if nobody else has the binder. EX_ILLEGAL_STATE when someone has, or got
     * it since the last checkClients(), and when no callback was registered: only those who hear of
     * clients may believe that there are none.
     */
    binder::Status tryUnregisterService(const std::string& name,
                                        const sp<IBinder>& service) override;

    binder::Status getServiceDebugInfo(std::vector<os::ServiceDebugInfo>* services) override;

    void binderDied(const wp<IBinder>& who) override;

    /** Tells services whether they have clients now. To be called each kClientCheckInterval. */
    void checkClients();

    static constexpr std::chrono::seconds kClientCheckInterval{5};  // as on Android
    static constexpr size_t kMostCallbacksOfApp = 256;

  private:
    struct Service {
        sp<IBinder> binder;
        bool allowIsolated = false;
        int32_t dumpPriority = 0;
        pid_t pid = 0;
        uid_t uid = 0;
        bool hasClients = false;  // what its callbacks were told last
        bool hadLookups = false;  // since the last check: a client that may have gone already
    };
    struct Callback {
        sp<os::IServiceCallback> callback;
        uid_t uid = 0;  // who registered it
    };
    using Callbacks = std::vector<Callback>;
    using ClientCallbacks = std::vector<sp<os::IClientCallback>>;

    static ssize_t referencesInDriver(const sp<IBinder>& service);

    sp<IBinder> find(const std::string& name) const;
    binder::Status checkServer(const std::string& name, const sp<IBinder>& service,
                               int32_t noService) const;
    void tellClients(const std::string& name, Service* service, bool hasClients);
    std::optional<ssize_t> takeCount(const std::string& name, Service* service);
    size_t callbacksOf(uid_t uid) const;
    bool watch(const sp<IBinder>& binder);
    void unwatch(const sp<IBinder>& binder);
    void put(const std::string& name, Service service);
    void tell(const std::string& name, const sp<IBinder>& service);

    std::map<std::string, Service> mServices;
    std::map<std::string, Callbacks> mCallbacks;
    std::map<std::string, ClientCallbacks> mClientCallbacks;
    const CountReferences mCountReferences;
};

}  // namespace android
