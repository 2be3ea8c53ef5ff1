#define LOG_TAG "ServiceManager"

#include <binder/IServiceManager.h>

#include <binder/ProcessState.h>
#include <binder_linux/BinderProbe.h>
#include <log/log.h>
#include <unistd.h>

#include <mutex>

#include "DriverAccess.h"
#include "ServiceManagerShim.h"

namespace android {

namespace {

constexpr unsigned kRetrySeconds = 1;

std::once_flag sChosen;

/** Set once, within sChosen. Never destroyed: threads that outlive main still use it. */
sp<IServiceManager>& chosenManager() {
    static sp<IServiceManager>& manager = *new sp<IServiceManager>;
    return manager;
}

/** Services may be started before the service manager: that is waited for. */
sp<IServiceManager> awaitManager() {
    LOG_ALWAYS_FATAL_IF(isDriverless(), "a process without a driver chose no service manager");
    const sp<ProcessState> process = ProcessState::self();
    sp<IBinder> context = process->getContextObject(nullptr);
    while (context == nullptr) {
        ALOGE("No service manager on %s yet, trying again in %u s",
              process->getDriverName().string(), kRetrySeconds);
        sleep(kRetrySeconds);
        context = process->getContextObject(nullptr);
    }
    return new ServiceManagerShim(interface_cast<os::IServiceManager>(context));
}

}  // namespace

IServiceManager::IServiceManager() = default;

IServiceManager::~IServiceManager() = default;

const String16& IServiceManager::getInterfaceDescriptor() const {
    static const String16 kDescriptor("android.os.IServiceManager");
    return kDescriptor;
}

sp<IServiceManager> defaultServiceManager() {
    std::call_once(sChosen, [] { chosenManager() = awaitManager(); });
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

bool isBinderDriverReachable(std::string* why) {
    std::string problem;
    if (tryBinderDriver(&problem) != nullptr) {
        return true;
    }
    *why = "no binder driver: " + problem;
    return false;
}

bool isServiceManagerReachable(std::string* why) {
    if (!isBinderDriverReachable(why)) {
        return false;
    }
    const sp<ProcessState> process = ProcessState::self();
    const bool answers = process->getContextObject(nullptr) != nullptr;
    if (!answers) {
        *why = std::string("no service manager answers: ") + process->getDriverName().string();
    }
    return answers;
}

}  // namespace android
