// Whether services have clients: their processes may end when nobody needs them.

#define LOG_TAG "servicemanager"

#include <binder/BpBinder.h>
#include <binder/IPCThreadState.h>
#include <binder/ProcessState.h>
#include <log/log.h>

#include <utility>

#include "Refusal.h"
#include "ServiceManager.h"

namespace android {

namespace {

using binder::Status;
using servicemanager::refusal;

// References that are no client's: the manager's own and, as Android reckons, while the server
// calls one for that call. A single client that was told of long ago therefore does not keep the
// name: a server asks once it has heard that there are none.
constexpr ssize_t kManagers = 1;
constexpr ssize_t kManagersInCall = 2;

}  // namespace

ssize_t ServiceManager::referencesInDriver(const sp<IBinder>& service) {
    const BpBinder* const proxy = service->remoteBinder();
    return proxy == nullptr
                   ? -1
                   : ProcessState::self()->getStrongRefCountForNodeByHandle(proxy->handle());
}

/** OK when the caller serves this binder under this name. */
Status ServiceManager::checkServer(const std::string& name, const sp<IBinder>& service,
                                   int32_t noService) const {
    const auto found = mServices.find(name);
    if (found == mServices.end()) {
        return refusal(noService, "there is no such service");
    }
    if (found->second.pid != IPCThreadState::self()->getCallingPid()) {
        return refusal(Status::EX_UNSUPPORTED_OPERATION, "only the server itself may ask for that");
    }
    return found->second.binder == service
                   ? Status::ok()
                   : refusal(noService, "another binder is registered under that name");
}

Status ServiceManager::registerClientCallback(const std::string& name, const sp<IBinder>& service,
                                              const sp<os::IClientCallback>& callback) {
    if (callback == nullptr) {
        return refusal(Status::EX_NULL_POINTER, "the callback is null");
    }
    if (const Status status = checkServer(name, service, Status::EX_ILLEGAL_ARGUMENT);
        !status.isOk()) {
        return status;
    }
    if (!watch(IInterface::asBinder(callback))) {
        return refusal(Status::EX_ILLEGAL_STATE, "the callback is dead");
    }
    mClientCallbacks[name].push_back(callback);
    return Status::ok();
}

void ServiceManager::tellClients(const std::string& name, Service* service, bool hasClients) {
    ALOGI("Notifying %s they have clients: %d", name.c_str(), hasClients);
    for (const sp<os::IClientCallback>& callback : mClientCallbacks[name]) {
        callback->onClients(service->binder, hasClients);
    }
    service->hasClients = hasClients;
}

/**
 * The service's references, none when nobody asked for its clients or they cannot be told. Who
 * looked it up since the last time counts as a client once, also when it has gone already.
 */
std::optional<ssize_t> ServiceManager::takeCount(const std::string& name, Service* service) {
    const ssize_t count = mClientCallbacks.contains(name) ? mCountReferences(service->binder) : -1;
    if (count < 0) {
        return std::nullopt;
    }
    if (std::exchange(service->hadLookups, false) && !service->hasClients && count <= kManagers) {
        tellClients(name, service, true);
    }
    return count;
}

void ServiceManager::checkClients() {
    for (auto& [name, service] : mServices) {
        const std::optional<ssize_t> count = takeCount(name, &service);
        if (count && (*count > kManagers) != service.hasClients) {
            tellClients(name, &service, *count > kManagers);
        }
    }
}

Status ServiceManager::tryUnregisterService(const std::string& name, const sp<IBinder>& service) {
    if (service == nullptr) {
        return refusal(Status::EX_NULL_POINTER, "the service is null");
    }
    if (const Status status = checkServer(name, service, Status::EX_ILLEGAL_STATE);
        !status.isOk()) {
        return status;
    }
    Service& known = mServices[name];
    if (known.hadLookups) {
        return refusal(Status::EX_ILLEGAL_STATE, "there is about to be a client");
    }
    const std::optional<ssize_t> count = takeCount(name, &known);
    if (!count || *count > kManagersInCall) {
        known.hadLookups = true;  // the next check tells of them
        return refusal(Status::EX_ILLEGAL_STATE, "there are clients");
    }
    unwatch(known.binder);
    mServices.erase(name);
    return Status::ok();
}

}  // namespace android
