// Strings: UTF-8 on the caller's side, UTF-16 in the parcel.

#include <utils/Unicode.h>

#include <string>

#include "NdkParcel.h"
#include "StatusCodes.h"

using android::Parcel;

namespace {

/**
 * Reads a string into the room that `allocate(length, &buffer)` gives; the length, as in
 * AParcel_stringAllocator, counts the zero at the end and is -1 for null.
 */
template <typename Allocate>
binder_status_t readText(const Parcel& parcel, Allocate allocate) {
    const size_t start = parcel.dataPosition();
    int32_t units;
    if (const binder_status_t status = readLength(parcel, sizeof(char16_t), &units);
        status != STATUS_OK) {
        return status;
    }
    if (units == kNullLength) {
        return allocate(kNullLength, nullptr) ? STATUS_OK : STATUS_UNEXPECTED_NULL;
    }
    parcel.setDataPosition(start);
    size_t wideLength;
    const char16_t* wide = parcel.readString16Inplace(&wideLength);
    if (wide == nullptr) {
        return STATUS_NOT_ENOUGH_DATA;
    }
    // Lone halves of surrogate pairs vanish; a text of nothing else has no UTF-8 form.
    const ssize_t bytes = wideLength > 0 ? utf16_to_utf8_length(wide, wideLength) : 0;
    if (bytes < 0 || bytes >= std::numeric_limits<int32_t>::max() ||
        (bytes == 0 && wideLength > 0)) {
        return STATUS_BAD_VALUE;
    }
    char* buffer = nullptr;
    if (!allocate(static_cast<int32_t>(bytes) + 1, &buffer) || buffer == nullptr) {
        return STATUS_NO_MEMORY;
    }
    utf16_to_utf8(wide, wideLength, buffer, static_cast<size_t>(bytes) + 1);
    buffer[bytes] = '\0';
    return STATUS_OK;
}

}  // namespace

binder_status_t AParcel_writeString(AParcel* parcel, const char* string, int32_t length) {
    if (length < kNullLength || (string == nullptr) != (length == kNullLength)) {
        return STATUS_BAD_VALUE;
    }
    if (string == nullptr) {
        return statusToPass(parcel->get()->writeInt32(kNullLength));
    }
    const std::string text(string, static_cast<size_t>(length));
    return statusToPass(parcel->get()->writeUtf8AsUtf16(text));
}

binder_status_t AParcel_readString(const AParcel* parcel, void* stringData,
                                   AParcel_stringAllocator allocator) {
    return readText(*parcel->get(), [&](int32_t length, char** buffer) {
        return allocator(stringData, length, buffer);
    });
}
