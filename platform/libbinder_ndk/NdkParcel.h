#pragma once

#include <android/binder_parcel.h>
#include <binder/Parcel.h>

#include <memory>

#include "NdkBinder.h"

/** A parcel, its own or another's, and the binder that a request in it is meant for. */
struct AParcel {
    /** An empty one; `target` may be null. */
    explicit AParcel(AIBinder* target)
          : mTarget(target), mOwned(std::make_unique<android::Parcel>()), mParcel(mOwned.get()) {}
    /** Within a call of `target`: `parcel` stays the caller's. */
    AParcel(AIBinder* target, android::Parcel* parcel) : mTarget(target), mParcel(parcel) {}
    AParcel(const AParcel&) = delete;
    AParcel& operator=(const AParcel&) = delete;

    const AIBinder* target() const { return mTarget.get(); }
    android::Parcel* get() { return mParcel; }
    const android::Parcel* get() const { return mParcel; }

  private:
    // Kept, so that no other binder can come to stand at its address.
    const android::sp<AIBinder> mTarget;
    const std::unique_ptr<android::Parcel> mOwned;
    android::Parcel* const mParcel;
};

/** Count of a null array or string. */
constexpr int32_t kNullLength = -1;

/**
 * Reads a count and refuses one that is no count or that the rest of the parcel cannot hold when
 * each element takes `leastBytes`. -1, for null, is fine.
 */
binder_status_t readLength(const android::Parcel& parcel, size_t leastBytes, int32_t* length);

/** Why an allocator that was asked for `length` elements gave none. */
inline binder_status_t refusalOf(int32_t length) {
    return length < 0 ? STATUS_UNEXPECTED_NULL : STATUS_NO_MEMORY;
}
