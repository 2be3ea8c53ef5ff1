#define LOG_TAG "ServiceManager"

#include "ServiceManagerShim.h"

#include <android/os/BnServiceCallback.h>
#include <binder/ProcessState.h>
#include <log/log.h>
#include <unistd.h>
#include <utils/Condition.h>
#include <utils/Mutex.h>

#include <algorithm>
#include <utility>

namespace android {

namespace {

constexpr nsecs_t kGetLimit = seconds_to_nanoseconds(5);
constexpr useconds_t kGetInterval = 100'000;  // µs
constexpr nsecs_t kWaitInterval = seconds_to_nanoseconds(1);

std::string utf8(const String16& text) {
    return String8(text).string();
}

/** Takes the notice of a registration. */
class Waiter : public os::BnServiceCallback {
  public:
    binder::Status onRegistration(const std::string&, const sp<IBinder>& service) override {
        AutoMutex lock(mLock);
        mService = service;
        mArrived.signal();
        return binder::Status::ok();
    }

    /** Null when none came within the interval. */
    sp<IBinder> wait() {
        AutoMutex lock(mLock);
        if (mService == nullptr) {
            mArrived.waitRelative(mLock, kWaitInterval);
        }
        return mService;
    }

  private:
    Mutex mLock;  // innermost lock; guards mService
    Condition mArrived;
    sp<IBinder> mService GUARDED_BY(mLock);
};

/** Passes notices on. */
class RegistrationNotice : public os::BnServiceCallback {
  public:
    explicit RegistrationNotice(const sp<IServiceManager::LocalRegistrationCallback>& callback)
          : mCallback(callback) {}

    binder::Status onRegistration(const std::string& name, const sp<IBinder>& service) override {
        mCallback->onServiceRegistration(String16(name.c_str()), service);
        return binder::Status::ok();
    }

  private:
    const sp<IServiceManager::LocalRegistrationCallback> mCallback;
};

}  // namespace

ServiceManagerShim::ServiceManagerShim(const sp<os::IServiceManager>& remote) : mRemote(remote) {}

IBinder* ServiceManagerShim::onAsBinder() {
    return IInterface::asBinder(mRemote).get();
}

sp<IBinder> ServiceManagerShim::checkService(const String16& name) const {
    sp<IBinder> service;
    return mRemote->checkService(utf8(name), &service).isOk() ? service : nullptr;
}

sp<IBinder> ServiceManagerShim::getService(const String16& name) const {
    sp<IBinder> service = checkService(name);
    if (service != nullptr) {
        return service;
    }
    const std::string text = utf8(name);
    ALOGI("Waiting for service '%s' on '%s'...", text.c_str(),
          ProcessState::self()->getDriverName().string());
    const nsecs_t start = systemTime(SYSTEM_TIME_MONOTONIC);
    while (service == nullptr && systemTime(SYSTEM_TIME_MONOTONIC) - start < kGetLimit) {
        usleep(kGetInterval);
        service = checkService(name);
    }
    ALOGW_IF(service == nullptr, "Service '%s' did not come within %lld ms", text.c_str(),
             static_cast<long long>(nanoseconds_to_milliseconds(kGetLimit)));
    return service;
}

status_t ServiceManagerShim::addService(const String16& name, const sp<IBinder>& service,
                                        bool allowIsolated, int dumpsysFlags) {
    return mRemote->addService(utf8(name), service, allowIsolated, dumpsysFlags).exceptionCode();
}

Vector<String16> ServiceManagerShim::listServices(int dumpsysFlags) {
    std::vector<std::string> names;
    Vector<String16> result;
    if (mRemote->listServices(dumpsysFlags, &names).isOk()) {
        result.setCapacity(names.size());
        for (const std::string& name : names) {
            result.push_back(String16(name.c_str()));
        }
    }
    return result;
}

sp<IBinder> ServiceManagerShim::waitForService(const String16& name) {
    const std::string text = utf8(name);
    sp<IBinder> service = checkService(name);
    if (service != nullptr) {
        return service;
    }
    const sp<Waiter> waiter = new Waiter();
    if (!mRemote->registerForNotifications(text, waiter).isOk()) {
        ALOGW("Service '%s' cannot be waited for", text.c_str());
        return nullptr;
    }
    while ((service = waiter->wait()) == nullptr && (service = checkService(name)) == nullptr) {
        ALOGW("Waited one second for service '%s'", text.c_str());
    }
    mRemote->unregisterForNotifications(text, waiter);
    return service;
}

bool ServiceManagerShim::isDeclared(const String16& name) {
    bool declared = false;
    return mRemote->isDeclared(utf8(name), &declared).isOk() && declared;
}

status_t ServiceManagerShim::registerForNotifications(
        const String16& name, const sp<LocalRegistrationCallback>& callback) {
    if (callback == nullptr) {
        return BAD_VALUE;
    }
    const sp<os::IServiceCallback> notice = new RegistrationNotice(callback);
    if (!mRemote->registerForNotifications(utf8(name), notice).isOk()) {
        ALOGW("Registrations of service '%s' will not be told", utf8(name).c_str());
        return UNKNOWN_ERROR;
    }
    AutoMutex lock(mLock);
    mNotified.push_back({name, callback, notice});
    return OK;
}

status_t ServiceManagerShim::unregisterForNotifications(
        const String16& name, const sp<LocalRegistrationCallback>& callback) {
    Notified notified;
    {
        AutoMutex lock(mLock);
        const auto found = std::ranges::find_if(mNotified, [&](const Notified& one) {
            return one.name == name && one.callback == callback;
        });
        if (found == mNotified.end()) {
            return BAD_VALUE;
        }
        notified = std::move(*found);
        mNotified.erase(found);
    }
    return mRemote->unregisterForNotifications(utf8(name), notified.remote).isOk() ? OK
                                                                                   : UNKNOWN_ERROR;
}

}  // namespace android
