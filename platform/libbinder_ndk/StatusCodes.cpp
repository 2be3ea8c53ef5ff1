#include "StatusCodes.h"

binder_status_t statusToPass(android::status_t status) {
    switch (status) {
        case STATUS_OK:
        case STATUS_UNKNOWN_ERROR:
        case STATUS_NO_MEMORY:
        case STATUS_INVALID_OPERATION:
        case STATUS_BAD_VALUE:
        case STATUS_BAD_TYPE:
        case STATUS_NAME_NOT_FOUND:
        case STATUS_PERMISSION_DENIED:
        case STATUS_NO_INIT:
        case STATUS_ALREADY_EXISTS:
        case STATUS_DEAD_OBJECT:
        case STATUS_FAILED_TRANSACTION:
        case STATUS_BAD_INDEX:
        case STATUS_NOT_ENOUGH_DATA:
        case STATUS_WOULD_BLOCK:
        case STATUS_TIMED_OUT:
        case STATUS_UNKNOWN_TRANSACTION:
        case STATUS_FDS_NOT_ALLOWED:
        case STATUS_UNEXPECTED_NULL:
            return status;
        default:
            return STATUS_UNKNOWN_ERROR;
    }
}

binder_exception_t exceptionToPass(int32_t exception) {
    return exception <= EX_NONE && exception >= EX_PARCELABLE ? exception : EX_TRANSACTION_FAILED;
}
