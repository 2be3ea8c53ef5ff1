#pragma once

#include <binder/Parcel.h>

#include <memory>

namespace android {

/** Count that stands for a null string or vector. */
constexpr int32_t kNullCount = -1;

/**
 * Reads a value that begins with its count and may be null, with `read` for one that is not.
 * `out` is null after a null value and after a failure.
 */
template <typename T, typename Read>
status_t readNullable(const Parcel& parcel, std::unique_ptr<T>* out, Read read) {
    out->reset();
    const size_t start = parcel.dataPosition();
    int32_t count;
    if (const status_t status = parcel.readInt32(&count); status != OK || count < 0) {
        return status;
    }
    parcel.setDataPosition(start);
    auto value = std::make_unique<T>();
    const status_t status = read(value.get());
    if (status == OK) {
        *out = std::move(value);
    }
    return status;
}

}  // namespace android
