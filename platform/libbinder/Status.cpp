#include <binder/Status.h>

namespace android {
namespace binder {

namespace {

// Android's Java side puts notes about data access before the exception, in a header like the
// reply header; <binder/Status.h> has no name for it.
constexpr int32_t kHasNotedAccessHeader = -127;

/** Skips a part that begins with its own size in bytes, the size included. */
status_t skipSizedPart(const Parcel& parcel) {
    const size_t start = parcel.dataPosition();
    const size_t available = parcel.dataAvail();
    int32_t size;
    if (const status_t status = parcel.readInt32(&size); status != OK) {
        return status;
    }
    if (size < 0 || static_cast<size_t>(size) > available) {
        return UNKNOWN_ERROR;
    }
    parcel.setDataPosition(start + static_cast<size_t>(size));
    return OK;
}

/** Skips a part whose size in bytes, not included, stands before it. */
status_t skipStackTrace(const Parcel& parcel) {
    int32_t size;
    if (const status_t status = parcel.readInt32(&size); status != OK) {
        return status;
    }
    if (size < 0 || static_cast<size_t>(size) > parcel.dataAvail()) {
        return UNKNOWN_ERROR;
    }
    parcel.setDataPosition(parcel.dataPosition() + static_cast<size_t>(size));
    return OK;
}

/** Reads the code that holds once the headers before it are skipped. */
status_t readCode(const Parcel& parcel, int32_t* code) {
    status_t status = parcel.readInt32(code);
    if (status == OK && *code == kHasNotedAccessHeader) {
        status = skipSizedPart(parcel);
        if (status == OK) {
            status = parcel.readInt32(code);
        }
    }
    if (status == OK && *code == Status::EX_HAS_REPLY_HEADER) {
        status = skipSizedPart(parcel);
        *code = Status::EX_NONE;
    }
    return status;
}

}  // namespace

Status::Status(int32_t exceptionCode, int32_t errorCode)
      : mException(exceptionCode), mErrorCode(errorCode) {}

Status::Status(int32_t exceptionCode, int32_t errorCode, const String8& message)
      : mException(exceptionCode), mErrorCode(errorCode), mMessage(message) {}

Status Status::ok() {
    return Status();
}

Status Status::fromExceptionCode(int32_t exceptionCode) {
    return Status(exceptionCode, OK);
}

Status Status::fromExceptionCode(int32_t exceptionCode, const String8& message) {
    return Status(exceptionCode, OK, message);
}

Status Status::fromExceptionCode(int32_t exceptionCode, const char* message) {
    return fromExceptionCode(exceptionCode, String8(message));
}

Status Status::fromServiceSpecificError(int32_t serviceSpecificErrorCode) {
    return Status(EX_SERVICE_SPECIFIC, serviceSpecificErrorCode);
}

Status Status::fromServiceSpecificError(int32_t serviceSpecificErrorCode, const String8& message) {
    return Status(EX_SERVICE_SPECIFIC, serviceSpecificErrorCode, message);
}

Status Status::fromServiceSpecificError(int32_t serviceSpecificErrorCode, const char* message) {
    return fromServiceSpecificError(serviceSpecificErrorCode, String8(message));
}

Status Status::fromStatusT(status_t status) {
    Status result;
    result.setFromStatusT(status);
    return result;
}

void Status::setException(int32_t ex, const String8& message) {
    mException = ex;
    mErrorCode = ex == EX_TRANSACTION_FAILED ? FAILED_TRANSACTION : OK;
    mMessage.setTo(message);
}

void Status::setFromStatusT(status_t status) {
    mException = status == OK ? EX_NONE : EX_TRANSACTION_FAILED;
    mErrorCode = status;
    mMessage.clear();
}

status_t Status::readFromParcel(const Parcel& parcel) {
    *this = Status();
    int32_t code = EX_NONE;
    status_t status = readCode(parcel, &code);
    String16 message;
    if (status == OK && code != EX_NONE) {
        status = parcel.readString16(&message);
        if (status == OK) {
            status = skipStackTrace(parcel);
        }
        if (status == OK && code == EX_SERVICE_SPECIFIC) {
            status = parcel.readInt32(&mErrorCode);
        } else if (status == OK && code == EX_PARCELABLE) {
            status = skipSizedPart(parcel);
        }
    }
    if (status != OK) {
        setFromStatusT(status);
        return status;
    }
    mException = code;
    mMessage = String8(message);
    return OK;
}

status_t Status::writeToParcel(Parcel* parcel) const {
    if (mException == EX_TRANSACTION_FAILED) {
        return mErrorCode;  // becomes the result of the transaction, which then has no reply
    }
    status_t status = parcel->writeInt32(mException);
    if (status != OK || mException == EX_NONE) {
        return status;
    }
    status = parcel->writeString16(String16(mMessage));
    if (status == OK) {
        status = parcel->writeInt32(0);  // size of the stack trace
    }
    if (status == OK && mException == EX_SERVICE_SPECIFIC) {
        status = parcel->writeInt32(mErrorCode);
    } else if (status == OK && mException == EX_PARCELABLE) {
        // A size that includes itself would be 4; 0 is what Android writes and reads.
        status = parcel->writeInt32(0);
    }
    return status;
}

std::string Status::exceptionToString(int32_t exceptionCode) {
    switch (exceptionCode) {
        case EX_NONE:
            return "EX_NONE";
        case EX_SECURITY:
            return "EX_SECURITY";
        case EX_BAD_PARCELABLE:
            return "EX_BAD_PARCELABLE";
        case EX_ILLEGAL_ARGUMENT:
            return "EX_ILLEGAL_ARGUMENT";
        case EX_NULL_POINTER:
            return "EX_NULL_POINTER";
        case EX_ILLEGAL_STATE:
            return "EX_ILLEGAL_STATE";
        case EX_NETWORK_MAIN_THREAD:
            return "EX_NETWORK_MAIN_THREAD";
        case EX_UNSUPPORTED_OPERATION:
            return "EX_UNSUPPORTED_OPERATION";
        case EX_SERVICE_SPECIFIC:
            return "EX_SERVICE_SPECIFIC";
        case EX_PARCELABLE:
            return "EX_PARCELABLE";
        case EX_HAS_REPLY_HEADER:
            return "EX_HAS_REPLY_HEADER";
        case EX_TRANSACTION_FAILED:
            return "EX_TRANSACTION_FAILED";
        default:
            return std::to_string(exceptionCode);
    }
}

String8 Status::toString8() const {
    if (isOk()) {
        return String8("No error");
    }
    String8 text =
            String8::format("Status(%d, %s): '", mException, exceptionToString(mException).c_str());
    if (mException == EX_SERVICE_SPECIFIC || mException == EX_TRANSACTION_FAILED) {
        text.appendFormat("%d: ", mErrorCode);
    }
    text.append(mMessage);
    text.append("'");
    return text;
}

}  // namespace binder
}  // namespace android
