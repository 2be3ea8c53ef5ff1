#include <binder_linux/LocalServiceManager.h>

#include <binder/Status.h>
#include <binder_linux/LocalProcess.h>
#include <binder_linux/ServiceName.h>

#include <mutex>
#include <utility>

namespace android {

namespace {

std::string keyOf(const String16& name) {
    return String8(name).string();
}

/** The one that this process has. Never destroyed: threads that outlive main still use it. */
sp<LocalServiceManager>& installedManager() {
    static sp<LocalServiceManager>& manager = *new sp<LocalServiceManager>;
    return manager;
}

}  // namespace

LocalServiceManager::LocalServiceManager() = default;

LocalServiceManager::~LocalServiceManager() = default;

IBinder* LocalServiceManager::onAsBinder() {
    return nullptr;
}

sp<IBinder> LocalServiceManager::findLocked(const std::string& name) const {
    const auto found = mServices.find(name);
    return found != mServices.end() ? found->second.binder : nullptr;
}

sp<IBinder> LocalServiceManager::checkService(const String16& name) const {
    AutoMutex lock(mLock);
    return findLocked(keyOf(name));
}

sp<IBinder> LocalServiceManager::getService(const String16& name) const {
    return checkService(name);
}

status_t LocalServiceManager::addService(const String16& name, const sp<IBinder>& service, bool,
                                         int dumpsysFlags) {
    const std::string key = keyOf(name);
    if (service == nullptr || !isLegalServiceName(key)) {
        return binder::Status::EX_ILLEGAL_ARGUMENT;
    }
    Entry entry{service, dumpsysFlags};
    std::vector<sp<LocalRegistrationCallback>> notified;
    {
        AutoMutex lock(mLock);
        std::swap(mServices[key], entry);
        mAdded.broadcast();
        if (const auto found = mNotified.find(key); found != mNotified.end()) {
            notified = found->second;
        }
    }
    for (const sp<LocalRegistrationCallback>& callback : notified) {
        callback->onServiceRegistration(name, service);
    }
    return OK;  // a service that was replaced is released here, without the lock
}

Vector<String16> LocalServiceManager::listServices(int dumpsysFlags) {
    Vector<String16> names;
    AutoMutex lock(mLock);
    for (const auto& [name, entry] : mServices) {
        if ((entry.dumpFlags & dumpsysFlags) != 0) {
            names.add(String16(name.c_str()));
        }
    }
    return names;
}

sp<IBinder> LocalServiceManager::waitForService(const String16& name) {
    const std::string key = keyOf(name);
    AutoMutex lock(mLock);
    sp<IBinder> service = findLocked(key);
    while (service == nullptr) {
        mAdded.wait(mLock);
        service = findLocked(key);
    }
    return service;
}

bool LocalServiceManager::isDeclared(const String16& name) {
    AutoMutex lock(mLock);
    return mDeclared.contains(keyOf(name));
}

status_t LocalServiceManager::registerForNotifications(
        const String16& name, const sp<LocalRegistrationCallback>& callback) {
    if (callback == nullptr) {
        return BAD_VALUE;
    }
    sp<IBinder> present;
    {
        AutoMutex lock(mLock);
        mNotified[keyOf(name)].push_back(callback);
        present = findLocked(keyOf(name));
    }
    if (present != nullptr) {
        callback->onServiceRegistration(name, present);
    }
    return OK;
}

status_t LocalServiceManager::unregisterForNotifications(
        const String16& name, const sp<LocalRegistrationCallback>& callback) {
    AutoMutex lock(mLock);
    return std::erase(mNotified[keyOf(name)], callback) > 0 ? OK : BAD_VALUE;
}

void LocalServiceManager::declareService(const String16& name) {
    AutoMutex lock(mLock);
    mDeclared.insert(keyOf(name));
}

bool LocalServiceManager::removeService(const String16& name) {
    decltype(mServices)::node_type removed;
    {
        AutoMutex lock(mLock);
        removed = mServices.extract(keyOf(name));
    }
    return !removed.empty();
}

sp<LocalServiceManager> installLocalServiceManager(const sp<LocalServiceManager>& manager) {
    static std::once_flag sInstalled;
    std::call_once(sInstalled, [&] {
        runWithoutDriver();
        installedManager() = manager != nullptr ? manager : new LocalServiceManager;
        setDefaultServiceManager(installedManager());
    });
    return installedManager();
}

}  // namespace android
