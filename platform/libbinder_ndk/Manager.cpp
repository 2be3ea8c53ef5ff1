#include <android/binder_manager.h>
#include <android/os/IServiceManager.h>
#include <binder/IServiceManager.h>

#include <string>
#include <vector>

#include "NdkBinder.h"
#include "StatusCodes.h"

using android::defaultServiceManager;
using android::IInterface;
using android::sp;
using android::String16;

binder_exception_t AServiceManager_addService(AIBinder* binder, const char* instance) {
    if (binder == nullptr || instance == nullptr) {
        return EX_NULL_POINTER;
    }
    return exceptionToPass(
            defaultServiceManager()->addService(String16(instance), binder->getBinder()));
}

AIBinder* AServiceManager_checkService(const char* instance) {
    return instance == nullptr ? nullptr
                               : giveOut(ndkBinderOf(defaultServiceManager()->checkService(
                                         String16(instance))));
}

AIBinder* AServiceManager_getService(const char* instance) {
    return instance == nullptr
                   ? nullptr
                   : giveOut(ndkBinderOf(defaultServiceManager()->getService(String16(instance))));
}

AIBinder* AServiceManager_waitForService(const char* instance) {
    return instance == nullptr ? nullptr
                               : giveOut(ndkBinderOf(defaultServiceManager()->waitForService(
                                         String16(instance))));
}

bool AServiceManager_isDeclared(const char* instance) {
    return instance != nullptr && defaultServiceManager()->isDeclared(String16(instance));
}

void AServiceManager_forEachDeclaredInstance(const char* interface, void* context,
                                             void (*callback)(const char*, void*)) {
    // The services of a process without a driver are asked for by name only.
    const sp<android::IBinder> binder = IInterface::asBinder(defaultServiceManager());
    if (interface == nullptr || binder == nullptr) {
        return;
    }
    std::vector<std::string> names;
    const auto manager = android::interface_cast<android::os::IServiceManager>(binder);
    if (manager->getDeclaredInstances(interface, &names).isOk()) {
        for (const std::string& name : names) {
            callback(name.c_str(), context);
        }
    }
}
