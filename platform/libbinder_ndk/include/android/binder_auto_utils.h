#pragma once

#include <android/binder_ibinder.h>
#include <android/binder_parcel.h>
#include <android/binder_status.h>
#include <unistd.h>

#include <cstddef>
#include <string>

namespace ndk {

/** A strong reference to a binder. As thread-safe as a shared_ptr. */
class SpAIBinder {
  public:
    SpAIBinder() = default;
    /** Takes over the caller's reference. */
    explicit SpAIBinder(AIBinder* binder) : mBinder(binder) {}
    // Implicit, so that null can be passed where a binder is wanted.
    SpAIBinder(std::nullptr_t) {}  // NOLINT(google-explicit-constructor)
    SpAIBinder(const SpAIBinder& other) { *this = other; }
    SpAIBinder(SpAIBinder&& other) noexcept : mBinder(other.mBinder) { other.mBinder = nullptr; }
    ~SpAIBinder() { set(nullptr); }

    // NOLINTNEXTLINE(bugprone-unhandled-self-assignment): the order below serves that too
    SpAIBinder& operator=(const SpAIBinder& other) {
        // First taken, then given: both may hold the last reference to the same binder.
        AIBinder_incStrong(other.mBinder);
        set(other.mBinder);
        return *this;
    }
    SpAIBinder& operator=(SpAIBinder&& other) noexcept {
        if (this != &other) {
            set(other.mBinder);
            other.mBinder = nullptr;
        }
        return *this;
    }

    /** Takes over the caller's reference to `binder` and gives up that which was held. */
    void set(AIBinder* binder) {
        AIBinder* old = mBinder;
        mBinder = binder;
        AIBinder_decStrong(old);
    }

    AIBinder* get() const { return mBinder; }

    /** Where a function that gives out a binder may put it; what was held is given up. */
    AIBinder** getR() {
        set(nullptr);
        return &mBinder;
    }

    explicit operator bool() const { return mBinder != nullptr; }
    bool operator!() const { return mBinder == nullptr; }
    bool operator==(const SpAIBinder& rhs) const { return mBinder == rhs.mBinder; }
    bool operator!=(const SpAIBinder& rhs) const { return mBinder != rhs.mBinder; }
    bool operator<(const SpAIBinder& rhs) const { return AIBinder_lt(mBinder, rhs.mBinder); }
    bool operator>(const SpAIBinder& rhs) const { return rhs < *this; }
    bool operator<=(const SpAIBinder& rhs) const { return !(rhs < *this); }
    bool operator>=(const SpAIBinder& rhs) const { return !(*this < rhs); }

  private:
    AIBinder* mBinder = nullptr;
};

namespace impl {

/** Owns one `T`, which `Destroy` ends; `DEFAULT` stands for none and is never destroyed. */
template <typename T, void (*Destroy)(T), T DEFAULT>
class ScopedAResource {
  public:
    ScopedAResource() = default;
    explicit ScopedAResource(T value) : mValue(value) {}
    ScopedAResource(ScopedAResource&& other) noexcept : mValue(other.release()) {}
    ScopedAResource(const ScopedAResource&) = delete;
    ~ScopedAResource() { set(DEFAULT); }

    ScopedAResource& operator=(ScopedAResource&& other) noexcept {
        set(other.release());
        return *this;
    }
    ScopedAResource& operator=(const ScopedAResource&) = delete;

    /** Owns `value` instead; the same as before is left alone. */
    void set(T value) {
        if (mValue != value) {
            const T old = release();
            mValue = value;
            if (old != DEFAULT) {
                Destroy(old);
            }
        }
    }

    T get() const { return mValue; }

    /** The caller owns it from now on. */
    [[nodiscard]] T release() {
        const T value = mValue;
        mValue = DEFAULT;
        return value;
    }

    /** For a function that takes what is owned or puts there what it makes; one of both. */
    T* getR() { return &mValue; }

  private:
    T mValue = DEFAULT;
};

inline void closeDescriptor(int fd) {
    close(fd);
}

}  // namespace impl

class ScopedAParcel : public impl::ScopedAResource<AParcel*, AParcel_delete, nullptr> {
  public:
    explicit ScopedAParcel(AParcel* parcel = nullptr) : ScopedAResource(parcel) {}
    ScopedAParcel(ScopedAParcel&&) = default;
    ScopedAParcel& operator=(ScopedAParcel&&) = default;
};

/** A status; one that holds none is not ok, and only isOk and getDescription may be asked. */
class ScopedAStatus : public impl::ScopedAResource<AStatus*, AStatus_delete, nullptr> {
  public:
    explicit ScopedAStatus(AStatus* status = nullptr) : ScopedAResource(status) {}
    ScopedAStatus(ScopedAStatus&&) = default;
    ScopedAStatus& operator=(ScopedAStatus&&) = default;

    bool isOk() const { return get() != nullptr && AStatus_isOk(get()); }
    binder_exception_t getExceptionCode() const { return AStatus_getExceptionCode(get()); }
    int32_t getServiceSpecificError() const { return AStatus_getServiceSpecificError(get()); }
    binder_status_t getStatus() const { return AStatus_getStatus(get()); }
    const char* getMessage() const { return AStatus_getMessage(get()); }

    std::string getDescription() const {
        if (get() == nullptr) {
            return "(no status)";
        }
        const char* description = AStatus_getDescription(get());
        std::string copy(description);
        AStatus_deleteDescription(description);
        return copy;
    }

    static ScopedAStatus ok() { return ScopedAStatus(AStatus_newOk()); }
    static ScopedAStatus fromExceptionCode(binder_exception_t exception) {
        return ScopedAStatus(AStatus_fromExceptionCode(exception));
    }
    static ScopedAStatus fromExceptionCodeWithMessage(binder_exception_t exception,
                                                      const char* message) {
        return ScopedAStatus(AStatus_fromExceptionCodeWithMessage(exception, message));
    }
    static ScopedAStatus fromServiceSpecificError(int32_t serviceSpecific) {
        return ScopedAStatus(AStatus_fromServiceSpecificError(serviceSpecific));
    }
    static ScopedAStatus fromServiceSpecificErrorWithMessage(int32_t serviceSpecific,
                                                             const char* message) {
        return ScopedAStatus(AStatus_fromServiceSpecificErrorWithMessage(serviceSpecific, message));
    }
    static ScopedAStatus fromStatus(binder_status_t status) {
        return ScopedAStatus(AStatus_fromStatus(status));
    }
};

class ScopedAIBinder_DeathRecipient
      : public impl::ScopedAResource<AIBinder_DeathRecipient*, AIBinder_DeathRecipient_delete,
                                     nullptr> {
  public:
    explicit ScopedAIBinder_DeathRecipient(AIBinder_DeathRecipient* recipient = nullptr)
          : ScopedAResource(recipient) {}
    ScopedAIBinder_DeathRecipient(ScopedAIBinder_DeathRecipient&&) = default;
    ScopedAIBinder_DeathRecipient& operator=(ScopedAIBinder_DeathRecipient&&) = default;
};

class ScopedAIBinder_Weak
      : public impl::ScopedAResource<AIBinder_Weak*, AIBinder_Weak_delete, nullptr> {
  public:
    explicit ScopedAIBinder_Weak(AIBinder_Weak* weakBinder = nullptr)
          : ScopedAResource(weakBinder) {}
    ScopedAIBinder_Weak(ScopedAIBinder_Weak&&) = default;
    ScopedAIBinder_Weak& operator=(ScopedAIBinder_Weak&&) = default;

    /** Null when nobody holds the binder any more. */
    SpAIBinder promote() { return SpAIBinder(AIBinder_Weak_promote(get())); }
};

/** A file descriptor, closed at the end; -1 for none. */
class ScopedFileDescriptor : public impl::ScopedAResource<int, impl::closeDescriptor, -1> {
  public:
    ScopedFileDescriptor() = default;
    explicit ScopedFileDescriptor(int fd) : ScopedAResource(fd) {}
    ScopedFileDescriptor(ScopedFileDescriptor&&) = default;
    ScopedFileDescriptor& operator=(ScopedFileDescriptor&&) = default;
};

}  // namespace ndk
