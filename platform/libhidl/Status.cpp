#include <hidl/Status.h>

#include <log/log.h>

#include <cstring>
#include <sstream>
#include <utility>

namespace android::hardware {

namespace {

template <typename Code, size_t N>
const char* nameOf(const std::pair<Code, const char*> (&names)[N], int32_t code) {
    for (const auto& [known, name] : names) {
        if (known == code) {
            return name;
        }
    }
    return nullptr;
}

const char* exceptionName(int32_t exception) {
    static constexpr std::pair<Status::Exception, const char*> kNames[] = {
            {Status::EX_SECURITY, "EX_SECURITY"},
            {Status::EX_BAD_PARCELABLE, "EX_BAD_PARCELABLE"},
            {Status::EX_ILLEGAL_ARGUMENT, "EX_ILLEGAL_ARGUMENT"},
            {Status::EX_NULL_POINTER, "EX_NULL_POINTER"},
            {Status::EX_ILLEGAL_STATE, "EX_ILLEGAL_STATE"},
            {Status::EX_NETWORK_MAIN_THREAD, "EX_NETWORK_MAIN_THREAD"},
            {Status::EX_UNSUPPORTED_OPERATION, "EX_UNSUPPORTED_OPERATION"},
            {Status::EX_TRANSACTION_FAILED, "EX_TRANSACTION_FAILED"},
    };
    const char* name = nameOf(kNames, exception);
    return name != nullptr ? name : "unknown exception";
}

std::string errorText(status_t error) {
    static constexpr std::pair<status_t, const char*> kNames[] = {
            {UNKNOWN_ERROR, "UNKNOWN_ERROR"},
            {BAD_TYPE, "BAD_TYPE"},
            {BAD_VALUE, "BAD_VALUE"},
            {NOT_ENOUGH_DATA, "NOT_ENOUGH_DATA"},
            {DEAD_OBJECT, "DEAD_OBJECT"},
            {FAILED_TRANSACTION, "FAILED_TRANSACTION"},
            {UNKNOWN_TRANSACTION, "UNKNOWN_TRANSACTION"},
            {PERMISSION_DENIED, "PERMISSION_DENIED"},
            {FDS_NOT_ALLOWED, "FDS_NOT_ALLOWED"},
            {UNEXPECTED_NULL, "UNEXPECTED_NULL"},
    };
    const char* name = nameOf(kNames, error);
    return name != nullptr ? name : "error " + std::to_string(error);
}

}  // namespace

Status Status::fromExceptionCode(int32_t exception, const char* message) {
    Status status;
    status.setException(exception, message);
    return status;
}

Status Status::fromStatusT(status_t error) {
    Status status;
    status.setFromStatusT(error);
    return status;
}

void Status::setException(int32_t exception, const char* message) {
    mException = exception;
    mError = exception == EX_TRANSACTION_FAILED ? FAILED_TRANSACTION : OK;
    mMessage = message;
}

void Status::setFromStatusT(status_t status) {
    mException = status == OK ? EX_NONE : EX_TRANSACTION_FAILED;
    mError = status;
    mMessage.clear();
}

std::string Status::description() const {
    std::ostringstream text;
    text << *this;
    return text.str();
}

std::ostream& operator<<(std::ostream& stream, const Status& status) {
    if (status.isOk()) {
        return stream << "No error";
    }
    stream << "Status(" << status.exceptionCode() << ", " << exceptionName(status.exceptionCode())
           << "): '";
    if (status.exceptionCode() == Status::EX_TRANSACTION_FAILED) {
        stream << errorText(status.transactionError());
    } else {
        stream << status.exceptionMessage();
    }
    return stream << "'";
}

namespace details {

return_status::return_status(return_status&& other) noexcept
      : mStatus(std::exchange(other.mStatus, Status())),
        mLooked(std::exchange(other.mLooked, true)) {}

return_status& return_status::operator=(return_status&& other) noexcept {
    if (this != &other) {
        endIfIgnored();
        mStatus = std::exchange(other.mStatus, Status());
        mLooked = std::exchange(other.mLooked, true);
    }
    return *this;
}

return_status::~return_status() {
    endIfIgnored();
}

bool return_status::isOk() const {
    mLooked = true;
    return mStatus.isOk();
}

bool return_status::isDeadObject() const {
    mLooked = true;
    return mStatus.transactionError() == DEAD_OBJECT;
}

void return_status::assertOk() const {
    LOG_ALWAYS_FATAL_IF(!isOk(), "the value of a failed HIDL call was used: %s",
                        description().c_str());
}

void return_status::endIfIgnored() const {
    LOG_ALWAYS_FATAL_IF(!mLooked && !mStatus.isOk(),
                        "a HIDL call failed and nobody looked: %s; call isOk() on what it returns",
                        description().c_str());
}

}  // namespace details

}  // namespace android::hardware
