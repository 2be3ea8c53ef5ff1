#include "NdkStatus.h"

#include <utils/String8.h>

#include <cstring>

#include "StatusCodes.h"

using android::String8;
using android::binder::Status;

namespace {

AStatus* newStatus(Status status) {
    return new AStatus{std::move(status)};
}

}  // namespace

AStatus* AStatus_newOk() {
    return newStatus(Status::ok());
}

AStatus* AStatus_fromExceptionCode(binder_exception_t exception) {
    return AStatus_fromExceptionCodeWithMessage(exception, "");
}

AStatus* AStatus_fromExceptionCodeWithMessage(binder_exception_t exception, const char* message) {
    Status status;
    // Unlike Status::fromExceptionCode, this gives EX_TRANSACTION_FAILED a status that is not OK.
    status.setException(exceptionToPass(exception), String8(message));
    return newStatus(status);
}

AStatus* AStatus_fromServiceSpecificError(int32_t serviceSpecific) {
    return newStatus(Status::fromServiceSpecificError(serviceSpecific));
}

AStatus* AStatus_fromServiceSpecificErrorWithMessage(int32_t serviceSpecific, const char* message) {
    return newStatus(Status::fromServiceSpecificError(serviceSpecific, message));
}

AStatus* AStatus_fromStatus(binder_status_t status) {
    return newStatus(Status::fromStatusT(statusToPass(status)));
}

bool AStatus_isOk(const AStatus* status) {
    return status->status.isOk();
}

binder_exception_t AStatus_getExceptionCode(const AStatus* status) {
    return exceptionToPass(status->status.exceptionCode());
}

int32_t AStatus_getServiceSpecificError(const AStatus* status) {
    return status->status.serviceSpecificErrorCode();
}

binder_status_t AStatus_getStatus(const AStatus* status) {
    return statusToPass(status->status.transactionError());
}

const char* AStatus_getMessage(const AStatus* status) {
    return status->status.exceptionMessage().string();
}

const char* AStatus_getDescription(const AStatus* status) {
    const String8 description = status->status.toString8();
    char* copy = new char[description.bytes() + 1];
    memcpy(copy, description.string(), description.bytes() + 1);
    return copy;
}

void AStatus_deleteDescription(const char* description) {
    delete[] description;
}

void AStatus_delete(AStatus* status) {
    delete status;
}
