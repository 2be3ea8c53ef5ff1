#include <limits>
#include <memory>

#include <binder/IServiceManager.h>

#include <binder/LocalServiceManager.h>
#include <log/log.h>

#include <mutex>

namespace android {

namespace {

std::once_flag sChosen;

/** Set once, within sChosen. Never destroyed: threads that outlive main still use it. */
sp<IServiceManager>& chosenManager() {
    static sp<IServiceManager>& manager = *new sp<IServiceManager>;
    return manager;
}

}  // namespace

IServiceManager::IServiceManager() = default;

IServiceManager::~IServiceManager() = default;

const String16& IServiceManager::getInterfaceDescriptor() const {
    static const String16 kDescriptor("android.os.IServiceManager");
    return kDescriptor;
}

sp<IServiceManager> defaultServiceManager() {
    std::call_once(sChosen, [] { chosenManager() = new LocalServiceManager; });
    return chosenManager();
}

void setDefaultServiceManager(const sp<IServiceManager>& sm) {
    bool chosenNow = false;
    std::call_once(sChosen, [&] {
        chosenManager() = sm;
        chosenNow = true;
    });
    LOG_ALWAYS_FATAL_IF(!chosenNow, "the default service manager is in use already");
}

}  // namespace android
