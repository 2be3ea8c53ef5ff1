#pragma once

#include <binder/Parcel.h>

#include "BinderProtocol.h"

/** Values as they stand in the driver's returns. */
namespace android {

/** Bytes of the next value; zeros when the returns end before it. */
template <typename T>
T readReturn(const Parcel& returns) {
    T value = {};
    returns.read(&value, sizeof(value));
    return value;
}

/** The driver's format holds addresses as numbers. */
template <typename T>
T* addressOf(binder_uintptr_t value) {
    const auto address = static_cast<uintptr_t>(value);
    return reinterpret_cast<T*>(address);  // NOLINT(performance-no-int-to-ptr)
}

inline const uint8_t* dataOf(const binder_transaction_data& received) {
    return addressOf<const uint8_t>(received.data.ptr.buffer);
}

inline const binder_size_t* objectsOf(const binder_transaction_data& received) {
    return addressOf<const binder_size_t>(received.data.ptr.offsets);
}

inline size_t objectCountOf(const binder_transaction_data& received) {
    return static_cast<size_t>(received.offsets_size / sizeof(binder_size_t));
}

}  // namespace android
