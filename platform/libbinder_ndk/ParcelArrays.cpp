// Arrays: a count, -1 for null, and the elements one behind the other.

#include <cstring>

#include "NdkParcel.h"
#include "StatusCodes.h"

using android::Parcel;

namespace {

/** Least room that an element of an array of anything takes. */
constexpr size_t kLeastElementBytes = sizeof(int32_t);

/** `isNull` is whether there is no array at all, where that can be seen. */
binder_status_t writeLength(Parcel* parcel, bool isNull, int32_t length) {
    if (length < kNullLength || (isNull && length > 0) || (!isNull && length < 0)) {
        return STATUS_BAD_VALUE;
    }
    return statusToPass(parcel->writeInt32(length));
}

/** Elements that lie in the parcel as they lie in memory. */
template <typename T>
binder_status_t writeFlatArray(AParcel* parcel, const T* array, int32_t length) {
    const binder_status_t status = writeLength(parcel->get(), array == nullptr, length);
    if (status != STATUS_OK || length <= 0) {
        return status;
    }
    return statusToPass(parcel->get()->write(array, static_cast<size_t>(length) * sizeof(T)));
}

template <typename T>
binder_status_t readFlatArray(const AParcel* parcel, void* arrayData,
                              bool (*allocator)(void*, int32_t, T**)) {
    int32_t length;
    const binder_status_t status = readLength(*parcel->get(), sizeof(T), &length);
    if (status != STATUS_OK) {
        return status;
    }
    T* array = nullptr;
    if (!allocator(arrayData, length, &array)) {
        return refusalOf(length);
    }
    if (length <= 0) {
        return STATUS_OK;
    }
    if (array == nullptr) {
        return STATUS_NO_MEMORY;
    }
    return statusToPass(parcel->get()->read(array, static_cast<size_t>(length) * sizeof(T)));
}

/** Reads or writes `length` elements, each with `element`, until one fails. */
template <typename Element>
binder_status_t forEach(int32_t length, Element element) {
    binder_status_t status = STATUS_OK;
    for (size_t i = 0; length > 0 && i < static_cast<size_t>(length) && status == STATUS_OK; ++i) {
        status = element(i);
    }
    return status;
}

}  // namespace

binder_status_t AParcel_writeInt32Array(AParcel* parcel, const int32_t* arrayData, int32_t length) {
    return writeFlatArray(parcel, arrayData, length);
}

binder_status_t AParcel_writeUint32Array(AParcel* parcel, const uint32_t* arrayData,
                                         int32_t length) {
    return writeFlatArray(parcel, arrayData, length);
}

binder_status_t AParcel_writeInt64Array(AParcel* parcel, const int64_t* arrayData, int32_t length) {
    return writeFlatArray(parcel, arrayData, length);
}

binder_status_t AParcel_writeUint64Array(AParcel* parcel, const uint64_t* arrayData,
                                         int32_t length) {
    return writeFlatArray(parcel, arrayData, length);
}

binder_status_t AParcel_writeFloatArray(AParcel* parcel, const float* arrayData, int32_t length) {
    return writeFlatArray(parcel, arrayData, length);
}

binder_status_t AParcel_writeDoubleArray(AParcel* parcel, const double* arrayData, int32_t length) {
    return writeFlatArray(parcel, arrayData, length);
}

binder_status_t AParcel_writeByteArray(AParcel* parcel, const int8_t* arrayData, int32_t length) {
    return writeFlatArray(parcel, arrayData, length);
}

// Characters, unlike bytes, take a word each.
binder_status_t AParcel_writeCharArray(AParcel* parcel, const char16_t* arrayData, int32_t length) {
    const binder_status_t status = writeLength(parcel->get(), arrayData == nullptr, length);
    if (status != STATUS_OK) {
        return status;
    }
    return forEach(length, [&](size_t i) { return AParcel_writeChar(parcel, arrayData[i]); });
}

binder_status_t AParcel_writeBoolArray(AParcel* parcel, const void* arrayData, int32_t length,
                                       AParcel_boolArrayGetter getter) {
    const binder_status_t status = writeLength(parcel->get(), length < 0, length);
    if (status != STATUS_OK) {
        return status;
    }
    return forEach(length,
                   [&](size_t i) { return AParcel_writeBool(parcel, getter(arrayData, i)); });
}

binder_status_t AParcel_writeParcelableArray(AParcel* parcel, const void* arrayData, int32_t length,
                                             AParcel_writeParcelableElement elementWriter) {
    const binder_status_t status = writeLength(parcel->get(), length < 0, length);
    if (status != STATUS_OK) {
        return status;
    }
    return forEach(length, [&](size_t i) { return elementWriter(parcel, arrayData, i); });
}

binder_status_t AParcel_readInt32Array(const AParcel* parcel, void* arrayData,
                                       AParcel_int32ArrayAllocator allocator) {
    return readFlatArray(parcel, arrayData, allocator);
}

binder_status_t AParcel_readUint32Array(const AParcel* parcel, void* arrayData,
                                        AParcel_uint32ArrayAllocator allocator) {
    return readFlatArray(parcel, arrayData, allocator);
}

binder_status_t AParcel_readInt64Array(const AParcel* parcel, void* arrayData,
                                       AParcel_int64ArrayAllocator allocator) {
    return readFlatArray(parcel, arrayData, allocator);
}

binder_status_t AParcel_readUint64Array(const AParcel* parcel, void* arrayData,
                                        AParcel_uint64ArrayAllocator allocator) {
    return readFlatArray(parcel, arrayData, allocator);
}

binder_status_t AParcel_readFloatArray(const AParcel* parcel, void* arrayData,
                                       AParcel_floatArrayAllocator allocator) {
    return readFlatArray(parcel, arrayData, allocator);
}

binder_status_t AParcel_readDoubleArray(const AParcel* parcel, void* arrayData,
                                        AParcel_doubleArrayAllocator allocator) {
    return readFlatArray(parcel, arrayData, allocator);
}

binder_status_t AParcel_readByteArray(const AParcel* parcel, void* arrayData,
                                      AParcel_byteArrayAllocator allocator) {
    return readFlatArray(parcel, arrayData, allocator);
}

binder_status_t AParcel_readCharArray(const AParcel* parcel, void* arrayData,
                                      AParcel_charArrayAllocator allocator) {
    int32_t length;
    const binder_status_t status = readLength(*parcel->get(), sizeof(int32_t), &length);
    if (status != STATUS_OK) {
        return status;
    }
    char16_t* array = nullptr;
    if (!allocator(arrayData, length, &array)) {
        return refusalOf(length);
    }
    if (length > 0 && array == nullptr) {
        return STATUS_NO_MEMORY;
    }
    return forEach(length, [&](size_t i) { return AParcel_readChar(parcel, &array[i]); });
}

binder_status_t AParcel_readBoolArray(const AParcel* parcel, void* arrayData,
                                      AParcel_boolArrayAllocator allocator,
                                      AParcel_boolArraySetter setter) {
    int32_t length;
    const binder_status_t status = readLength(*parcel->get(), sizeof(int32_t), &length);
    if (status != STATUS_OK) {
        return status;
    }
    if (!allocator(arrayData, length)) {
        return refusalOf(length);
    }
    return forEach(length, [&](size_t i) {
        bool value = false;
        const binder_status_t result = AParcel_readBool(parcel, &value);
        if (result == STATUS_OK) {
            setter(arrayData, i, value);
        }
        return result;
    });
}

binder_status_t AParcel_readParcelableArray(const AParcel* parcel, void* arrayData,
                                            AParcel_parcelableArrayAllocator allocator,
                                            AParcel_readParcelableElement elementReader) {
    int32_t length;
    const binder_status_t status = readLength(*parcel->get(), kLeastElementBytes, &length);
    if (status != STATUS_OK) {
        return status;
    }
    if (!allocator(arrayData, length)) {
        return refusalOf(length);
    }
    return forEach(length, [&](size_t i) { return elementReader(parcel, arrayData, i); });
}
