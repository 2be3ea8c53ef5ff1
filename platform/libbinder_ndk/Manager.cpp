#include <android/binder_manager.h>
#include <binder/IServiceManager.h>

#include "NdkBinder.h"
#include "StatusCodes.h"

using android::defaultServiceManager;
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

bool AServiceManager_isDeclared(const char* instance) {
    return instance != nullptr && defaultServiceManager()->isDeclared(String16(instance));
}
