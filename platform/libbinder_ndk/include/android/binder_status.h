#pragma once

#include <errno.h>
#include <stdbool.h>
#include <stdint.h>
#include <sys/cdefs.h>

__BEGIN_DECLS

/**
 * How a call went, as the machinery between the two sides sees it: 0, a negative errno, or one of
 * the values below that no errno stands for. A value that is not listed becomes
 * STATUS_UNKNOWN_ERROR on its way through this library.
 */
enum {
    STATUS_OK = 0,

    STATUS_UNKNOWN_ERROR = (-2147483647 - 1),  // INT32_MIN
    STATUS_NO_MEMORY = -ENOMEM,
    STATUS_INVALID_OPERATION = -ENOSYS,
    STATUS_BAD_VALUE = -EINVAL,
    STATUS_BAD_TYPE = (STATUS_UNKNOWN_ERROR + 1),
    STATUS_NAME_NOT_FOUND = -ENOENT,
    STATUS_PERMISSION_DENIED = -EPERM,
    STATUS_NO_INIT = -ENODEV,
    STATUS_ALREADY_EXISTS = -EEXIST,
    STATUS_DEAD_OBJECT = -EPIPE,
    STATUS_FAILED_TRANSACTION = (STATUS_UNKNOWN_ERROR + 2),
    STATUS_BAD_INDEX = -EOVERFLOW,
    STATUS_NOT_ENOUGH_DATA = -ENODATA,
    STATUS_WOULD_BLOCK = -EWOULDBLOCK,
    STATUS_TIMED_OUT = -ETIMEDOUT,
    STATUS_UNKNOWN_TRANSACTION = -EBADMSG,
    STATUS_FDS_NOT_ALLOWED = (STATUS_UNKNOWN_ERROR + 7),
    STATUS_UNEXPECTED_NULL = (STATUS_UNKNOWN_ERROR + 8),
};
typedef int32_t binder_status_t;

/** What a service answers in place of a result. Travels at the head of each reply. */
enum {
    EX_NONE = 0,
    EX_SECURITY = -1,
    EX_BAD_PARCELABLE = -2,
    EX_ILLEGAL_ARGUMENT = -3,
    EX_NULL_POINTER = -4,
    EX_ILLEGAL_STATE = -5,
    EX_NETWORK_MAIN_THREAD = -6,
    EX_UNSUPPORTED_OPERATION = -7,
    EX_SERVICE_SPECIFIC = -8,  // comes with a number of the service's own
    EX_PARCELABLE = -9,

    /** The call itself failed: AStatus_getStatus says how. Never travels. */
    EX_TRANSACTION_FAILED = -129,
};
typedef int32_t binder_exception_t;

/**
 * Outcome of a call: an exception, with a message, or a status, or that all is well. Belongs to one
 * thread at a time. Whoever makes one deletes it.
 */
struct AStatus;
typedef struct AStatus AStatus;

AStatus* AStatus_newOk(void) __attribute__((warn_unused_result));

/** An exception that is not listed above becomes EX_TRANSACTION_FAILED. */
AStatus* AStatus_fromExceptionCode(binder_exception_t exception)
        __attribute__((warn_unused_result));
AStatus* AStatus_fromExceptionCodeWithMessage(binder_exception_t exception, const char* message)
        __attribute__((warn_unused_result));

/** EX_SERVICE_SPECIFIC with this number; 0 is a number as any other, the status is not ok. */
AStatus* AStatus_fromServiceSpecificError(int32_t serviceSpecific)
        __attribute__((warn_unused_result));
AStatus* AStatus_fromServiceSpecificErrorWithMessage(int32_t serviceSpecific, const char* message)
        __attribute__((warn_unused_result));

/** Ok for STATUS_OK, else EX_TRANSACTION_FAILED with the status. */
AStatus* AStatus_fromStatus(binder_status_t status) __attribute__((warn_unused_result));

bool AStatus_isOk(const AStatus* status);

binder_exception_t AStatus_getExceptionCode(const AStatus* status);

/** 0 unless the exception is EX_SERVICE_SPECIFIC. */
int32_t AStatus_getServiceSpecificError(const AStatus* status);

/** STATUS_OK unless the exception is EX_TRANSACTION_FAILED. */
binder_status_t AStatus_getStatus(const AStatus* status);

/** Empty when there is none; valid as long as the status. */
const char* AStatus_getMessage(const AStatus* status);

/** All of it for a log line; goes back to AStatus_deleteDescription. */
const char* AStatus_getDescription(const AStatus* status) __attribute__((warn_unused_result));
void AStatus_deleteDescription(const char* description);

/** Null is fine. */
void AStatus_delete(AStatus* status);

__END_DECLS
