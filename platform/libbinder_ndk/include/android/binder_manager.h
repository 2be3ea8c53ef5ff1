#pragma once

#include <android/binder_ibinder.h>
#include <android/binder_status.h>
#include <sys/cdefs.h>

__BEGIN_DECLS

/** Registers a service in place of an older one of that name. EX_NONE, or why it was refused. */
binder_exception_t AServiceManager_addService(AIBinder* binder, const char* instance)
        __attribute__((warn_unused_result));

/** The service with a strong reference, or null at once. */
AIBinder* AServiceManager_checkService(const char* instance) __attribute__((warn_unused_result));

/** The same, but waits some seconds for a service that is not there yet. */
AIBinder* AServiceManager_getService(const char* instance) __attribute__((warn_unused_result));

/** Whether the device's manifest names this instance, so that waiting for it has an end. */
bool AServiceManager_isDeclared(const char* instance) __attribute__((warn_unused_result));

__END_DECLS
