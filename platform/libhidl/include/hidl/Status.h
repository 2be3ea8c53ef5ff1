#pragma once

#include <hidl/HidlSupport.h>
#include <utils/Errors.h>

#include <cstdint>
#include <ostream>
#include <string>
#include <type_traits>
#include <utility>

namespace android::hardware {

/** How a call ended. Not thread-safe; the caller serialises. */
class Status final {
  public:
    enum Exception : int32_t {
        EX_NONE = 0,
        EX_SECURITY = -1,
        EX_BAD_PARCELABLE = -2,
        EX_ILLEGAL_ARGUMENT = -3,
        EX_NULL_POINTER = -4,
        EX_ILLEGAL_STATE = -5,
        EX_NETWORK_MAIN_THREAD = -6,
        EX_UNSUPPORTED_OPERATION = -7,
        EX_HAS_REPLY_HEADER = -128,
        /** The call did not get through; transactionError() tells why. */
        EX_TRANSACTION_FAILED = -129,
    };

    Status() = default;
    static Status ok() { return {}; }
    static Status fromExceptionCode(int32_t exception) { return fromExceptionCode(exception, ""); }
    static Status fromExceptionCode(int32_t exception, const char* message);
    /** OK gives ok(), anything else EX_TRANSACTION_FAILED. */
    static Status fromStatusT(status_t status);

    void setException(int32_t exception, const char* message);
    void setFromStatusT(status_t status);

    bool isOk() const { return mException == EX_NONE; }
    int32_t exceptionCode() const { return mException; }
    const char* exceptionMessage() const { return mMessage.c_str(); }
    /** OK unless the exception is EX_TRANSACTION_FAILED. */
    status_t transactionError() const { return mError; }

    /** For people: "No error", or exception with message or transaction error. */
    std::string description() const;

  private:
    int32_t mException = EX_NONE;
    status_t mError = OK;
    std::string mMessage;
};

std::ostream& operator<<(std::ostream& stream, const Status& status);

namespace details {

/**
 * The part of Return that does not depend on its type. Whoever gets one must look whether the call
 * succeeded: an error that is dropped, or taken for a value, ends the process.
 */
class return_status {
  public:
    return_status() = default;
    // Implicit so that an implementation returns a Status.
    return_status(Status status)  // NOLINT(google-explicit-constructor)
          : mStatus(std::move(status)) {}
    return_status(return_status&& other) noexcept;
    /** Ends the process when what it had is an error nobody looked at. */
    return_status& operator=(return_status&& other) noexcept;
    ~return_status();

    /** The call was made and answered. Looks. */
    bool isOk() const;
    /** The process of the service is gone. Looks. */
    bool isDeadObject() const;
    /** Status::description(). Does not look. */
    std::string description() const { return mStatus.description(); }

  protected:
    /** Ends the process on an error. */
    void assertOk() const;

  private:
    friend class ReturnReader;
    void endIfIgnored() const;

    Status mStatus;
    mutable bool mLooked = false;
};

/** The status of a return for the side that answers the call; looks. */
class ReturnReader {
  public:
    static const Status& statusOf(const return_status& result) {
        result.mLooked = true;
        return result.mStatus;
    }
};

}  // namespace details

/** What a call of an interface returns. Can be moved, not copied. */
template <typename T>
class Return : public details::return_status {
  public:
    // Conversions from and to the value as on Android.
    Return(T value) : mValue(std::move(value)) {}  // NOLINT(google-explicit-constructor)
    Return(Status status)                          // NOLINT(google-explicit-constructor)
          : return_status(std::move(status)) {}
    /** From a reference to a class that derives from the one T refers to. */
    template <typename U, typename = std::enable_if_t<std::is_convertible_v<sp<U>, T>>>
    Return(const sp<U>& value) : mValue(value) {}  // NOLINT(google-explicit-constructor)

    /** The value; ends the process on an error. */
    operator T() const {  // NOLINT(google-explicit-constructor)
        assertOk();
        return mValue;
    }
    /** The value, or `other` on an error. */
    T withDefault(T other) const { return isOk() ? mValue : other; }

  private:
    T mValue{};
};

template <>
class Return<void> : public details::return_status {
  public:
    Return() = default;
    Return(Status status)  // NOLINT(google-explicit-constructor)
          : return_status(std::move(status)) {}
};

/** What an implementation returns from a call without a result. */
inline Return<void> Void() {
    return {};
}

}  // namespace android::hardware
