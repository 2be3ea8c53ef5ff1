#define LOG_TAG "servicemanager"

#include "ServiceManager.h"

#include <binder/IPCThreadState.h>
#include <binder/Stability.h>
#include <binder_linux/ServiceName.h>
#include <log/log.h>

#include <algorithm>
#include <utility>

#include "DeclaredServices.h"
#include "Refusal.h"

namespace android {

namespace {

using binder::Status;
using servicemanager::refusal;

// Android's uids: each user has a range of its own, in which apps begin at one number and isolated
// processes at another.
constexpr uid_t kUidsOfUser = 100000;
constexpr uid_t kFirstApp = 10000;
constexpr uid_t kFirstIsolated = 90000;

uid_t callingAppId() {
    return IPCThreadState::self()->getCallingUid() % kUidsOfUser;
}

/** An interface that the whole phone relies on must be one that its manifest promises. */
bool mayHaveName(const sp<IBinder>& service, const std::string& name) {
    return !internal::Stability::requiresVintfDeclaration(service) ||
           servicemanager::isDeclared(name);
}

}  // namespace

ServiceManager::ServiceManager(CountReferences countReferences)
      : mCountReferences(std::move(countReferences)) {}

sp<IBinder> ServiceManager::find(const std::string& name) const {
    const auto found = mServices.find(name);
    if (found == mServices.end()) {
        return nullptr;
    }
    const bool reachable = found->second.allowIsolated || callingAppId() < kFirstIsolated;
    return reachable ? found->second.binder : nullptr;
}

Status ServiceManager::getService(const std::string& name, sp<IBinder>* service) {
    return checkService(name, service);
}

Status ServiceManager::checkService(const std::string& name, sp<IBinder>* service) {
    *service = find(name);
    if (*service != nullptr) {
        mServices[name].hadLookups = true;
    }
    return Status::ok();
}

// A binder of this very process cannot die before it.
bool ServiceManager::watch(const sp<IBinder>& binder) {
    return binder->remoteBinder() == nullptr || binder->linkToDeath(this) == OK;
}

void ServiceManager::unwatch(const sp<IBinder>& binder) {
    if (binder->remoteBinder() != nullptr) {
        binder->unlinkToDeath(this);
    }
}

Status ServiceManager::addService(const std::string& name, const sp<IBinder>& service,
                                  bool allowIsolated, int32_t dumpPriority) {
    if (callingAppId() >= kFirstApp) {
        return refusal(Status::EX_SECURITY, "apps may not add services");
    }
    if (service == nullptr) {
        return refusal(Status::EX_ILLEGAL_ARGUMENT, "the service is null");
    }
    if (!isLegalServiceName(name)) {
        ALOGE("no name for a service: '%s'", name.c_str());
        return refusal(Status::EX_ILLEGAL_ARGUMENT, "no name for a service");
    }
    if (!mayHaveName(service, name)) {
        ALOGE("'%s' is no instance that the manifest declares", name.c_str());
        return refusal(Status::EX_ILLEGAL_ARGUMENT, "not declared in the manifest");
    }
    if (!watch(service)) {
        return refusal(Status::EX_ILLEGAL_STATE, "the service is dead");
    }
    const IPCThreadState* const caller = IPCThreadState::self();
    put(name,
        {service, allowIsolated, dumpPriority, caller->getCallingPid(), caller->getCallingUid()});
    tell(name, service);
    return Status::ok();
}

void ServiceManager::put(const std::string& name, Service service) {
    const auto [place, isNew] = mServices.try_emplace(name);
    if (!isNew) {
        ALOGI("Service '%s' originally registered under UID %u (PID %d) is overwritten by "
              "UID %u (PID %d)",
              name.c_str(), place->second.uid, place->second.pid, service.uid, service.pid);
        unwatch(place->second.binder);
    }
    place->second = std::move(service);
}

void ServiceManager::tell(const std::string& name, const sp<IBinder>& service) {
    const auto found = mCallbacks.find(name);
    if (found == mCallbacks.end()) {
        return;
    }
    mServices[name].hadLookups = true;
    for (const auto& [callback, uid] : found->second) {
        callback->onRegistration(name, service);
    }
}

Status ServiceManager::listServices(int32_t dumpPriority, std::vector<std::string>* names) {
    for (const auto& [name, service] : mServices) {
        if ((service.dumpPriority & dumpPriority) != 0) {
            names->push_back(name);
        }
    }
    return Status::ok();
}

size_t ServiceManager::callbacksOf(uid_t uid) const {
    size_t count = 0;
    for (const auto& [name, callbacks] : mCallbacks) {
        count += static_cast<size_t>(std::ranges::count(callbacks, uid, &Callback::uid));
    }
    return count;
}

Status ServiceManager::registerForNotifications(const std::string& name,
                                                const sp<os::IServiceCallback>& callback) {
    if (!isLegalServiceName(name)) {
        return refusal(Status::EX_ILLEGAL_ARGUMENT, "no name for a service");
    }
    if (callback == nullptr) {
        return refusal(Status::EX_NULL_POINTER, "the callback is null");
    }
    const uid_t uid = IPCThreadState::self()->getCallingUid();
    if (callingAppId() >= kFirstApp && callbacksOf(uid) >= kMostCallbacksOfApp) {
        return refusal(Status::EX_ILLEGAL_STATE, "the app has too many callbacks");
    }
    if (!watch(IInterface::asBinder(callback))) {
        return refusal(Status::EX_ILLEGAL_STATE, "the callback is dead");
    }
    mCallbacks[name].push_back({callback, uid});
    if (const sp<IBinder> service = find(name); service != nullptr) {
        callback->onRegistration(name, service);
    }
    return Status::ok();
}

Status ServiceManager::unregisterForNotifications(const std::string& name,
                                                  const sp<os::IServiceCallback>& callback) {
    const auto found = mCallbacks.find(name);
    const sp<IBinder> binder = IInterface::asBinder(callback);
    const auto isIt = [&](const Callback& other) {
        return IInterface::asBinder(other.callback) == binder;
    };
    const auto removed = found == mCallbacks.end() ? 0 : std::erase_if(found->second, isIt);
    if (removed == 0) {
        return refusal(Status::EX_ILLEGAL_STATE, "the callback is not registered");
    }
    for (size_t i = 0; i < removed; ++i) {
        unwatch(binder);
    }
    if (found->second.empty()) {
        mCallbacks.erase(found);
    }
    return Status::ok();
}

Status ServiceManager::isDeclared(const std::string& name, bool* declared) {
    *declared = servicemanager::isDeclared(name);
    return Status::ok();
}

Status ServiceManager::getDeclaredInstances(const std::string& interface,
                                            std::vector<std::string>* instances) {
    *instances = servicemanager::declaredInstances(interface);
    return Status::ok();
}

Status ServiceManager::updatableViaApex(const std::string&, std::unique_ptr<std::string>* apex) {
    apex->reset();
    return Status::ok();
}

Status ServiceManager::getConnectionInfo(const std::string&,
                                         std::unique_ptr<os::ConnectionInfo>* info) {
    info->reset();
    return Status::ok();
}

Status ServiceManager::getServiceDebugInfo(std::vector<os::ServiceDebugInfo>* services) {
    for (const auto& [name, service] : mServices) {
        os::ServiceDebugInfo& info = services->emplace_back();
        info.name = name;
        info.debugPid = service.pid;
    }
    return Status::ok();
}

void ServiceManager::binderDied(const wp<IBinder>& who) {
    std::erase_if(mServices, [&](const auto& entry) { return who == entry.second.binder; });
    const auto forget = [](auto& callbacksByName, auto isDead) {
        for (auto& [name, callbacks] : callbacksByName) {
            std::erase_if(callbacks, isDead);
        }
        std::erase_if(callbacksByName, [](const auto& entry) { return entry.second.empty(); });
    };
    forget(mCallbacks,
           [&](const Callback& known) { return who == IInterface::asBinder(known.callback); });
    forget(mClientCallbacks,
           [&](const auto& callback) { return who == IInterface::asBinder(callback); });
}

}  // namespace android
