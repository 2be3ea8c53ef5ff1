#pragma once

#include <android/binder_status.h>
#include <utils/Errors.h>

/** The status itself when it is one of those that binder_status.h lists, else UNKNOWN_ERROR. */
binder_status_t statusToPass(android::status_t status);

/** The exception itself when binder_status.h lists it, else EX_TRANSACTION_FAILED. */
binder_exception_t exceptionToPass(int32_t exception);
