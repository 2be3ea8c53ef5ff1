#pragma once

#include <android/binder_auto_utils.h>
#include <android/binder_parcel.h>
#include <binder_ndk_linux/binder_parcel_values.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

// C++ values in parcels, for the code that the aidl compiler makes: strings, vectors of everything,
// binders and files. An optional is a value that may be null; reading null into anything else gives
// STATUS_UNEXPECTED_NULL. Thread rule and treatment of hostile counts are those of AParcel.

namespace ndk {

namespace impl {

/** The C functions for arrays of what lies in a vector one behind the other. */
template <typename T>
struct ArrayCalls {};
template <>
struct ArrayCalls<int32_t> {
    static constexpr auto kWrite = AParcel_writeInt32Array;
    static constexpr auto kRead = AParcel_readInt32Array;
};
template <>
struct ArrayCalls<uint32_t> {
    static constexpr auto kWrite = AParcel_writeUint32Array;
    static constexpr auto kRead = AParcel_readUint32Array;
};
template <>
struct ArrayCalls<int64_t> {
    static constexpr auto kWrite = AParcel_writeInt64Array;
    static constexpr auto kRead = AParcel_readInt64Array;
};
template <>
struct ArrayCalls<uint64_t> {
    static constexpr auto kWrite = AParcel_writeUint64Array;
    static constexpr auto kRead = AParcel_readUint64Array;
};
template <>
struct ArrayCalls<float> {
    static constexpr auto kWrite = AParcel_writeFloatArray;
    static constexpr auto kRead = AParcel_readFloatArray;
};
template <>
struct ArrayCalls<double> {
    static constexpr auto kWrite = AParcel_writeDoubleArray;
    static constexpr auto kRead = AParcel_readDoubleArray;
};
template <>
struct ArrayCalls<char16_t> {
    static constexpr auto kWrite = AParcel_writeCharArray;
    static constexpr auto kRead = AParcel_readCharArray;
};
template <>
struct ArrayCalls<int8_t> {
    static constexpr auto kWrite = AParcel_writeByteArray;
    static constexpr auto kRead = AParcel_readByteArray;
};
template <typename T>
concept PlainElement = requires {
    ArrayCalls<T>::kWrite;
};

// Elements of the other vectors. A parcelable writes the mark that it is not null itself.
template <typename T>
binder_status_t writeElement(AParcel* parcel, const T& value) {
    return value.writeToParcel(parcel);
}
template <typename T>
binder_status_t readElement(const AParcel* parcel, T* value) {
    return value->readFromParcel(parcel);
}
template <typename T>
binder_status_t writeElement(AParcel* parcel, const std::shared_ptr<T>& value) {
    return T::writeToParcel(parcel, value);
}
template <typename T>
binder_status_t readElement(const AParcel* parcel, std::shared_ptr<T>* value) {
    return T::readFromParcel(parcel, value);
}
inline binder_status_t writeElement(AParcel* parcel, const std::string& value) {
    return AParcel_writeString(parcel, value);
}
inline binder_status_t readElement(const AParcel* parcel, std::string* value) {
    return AParcel_readString(parcel, value);
}
inline binder_status_t writeElement(AParcel* parcel, const std::optional<std::string>& value) {
    return AParcel_writeString(parcel, value);
}
inline binder_status_t readElement(const AParcel* parcel, std::optional<std::string>* value) {
    return AParcel_readString(parcel, value);
}
inline binder_status_t writeElement(AParcel* parcel, const SpAIBinder& value) {
    return AParcel_writeRequiredStrongBinder(parcel, value);
}
inline binder_status_t readElement(const AParcel* parcel, SpAIBinder* value) {
    return AParcel_readRequiredStrongBinder(parcel, value);
}
inline binder_status_t writeElement(AParcel* parcel, const ScopedFileDescriptor& value) {
    return AParcel_writeRequiredParcelFileDescriptor(parcel, value);
}
inline binder_status_t readElement(const AParcel* parcel, ScopedFileDescriptor* value) {
    return AParcel_readRequiredParcelFileDescriptor(parcel, value);
}

/** Null when `length` says so; otherwise `length` new elements. False when null is not wanted. */
template <typename T>
bool resize(std::vector<T>* vec, int32_t length) {
    vec->clear();
    if (length < 0) {
        return false;
    }
    vec->resize(static_cast<size_t>(length));
    return true;
}
template <typename T>
bool resize(std::optional<std::vector<T>>* vec, int32_t length) {
    vec->reset();
    return length < 0 || resize(&vec->emplace(), length);
}

template <typename T>
std::vector<T>& elementsOf(std::vector<T>& vec) {
    return vec;
}
template <typename T>
std::vector<T>& elementsOf(std::optional<std::vector<T>>& vec) {
    return *vec;
}

template <typename T>
binder_status_t writeVector(AParcel* parcel, const std::vector<T>* vec) {
    if (vec != nullptr && vec->size() > static_cast<size_t>(std::numeric_limits<int32_t>::max())) {
        return STATUS_BAD_VALUE;
    }
    const int32_t length = vec != nullptr ? static_cast<int32_t>(vec->size()) : -1;
    if constexpr (PlainElement<T>) {
        return ArrayCalls<T>::kWrite(parcel, vec != nullptr ? vec->data() : nullptr, length);
    } else if constexpr (std::is_same_v<T, uint8_t>) {
        const void* bytes = vec != nullptr ? vec->data() : nullptr;
        return AParcel_writeByteArray(parcel, static_cast<const int8_t*>(bytes), length);
    } else if constexpr (std::is_same_v<T, bool>) {
        return AParcel_writeBoolArray(parcel, vec, length, [](const void* data, size_t index) {
            return bool((*static_cast<const std::vector<bool>*>(data))[index]);
        });
    } else {
        return AParcel_writeParcelableArray(
                parcel, vec, length, [](AParcel* to, const void* data, size_t index) {
                    return writeElement(to, (*static_cast<const std::vector<T>*>(data))[index]);
                });
    }
}

/** `Vector` is a vector of T or an optional one. */
template <typename T, typename Vector>
binder_status_t readVector(const AParcel* parcel, Vector* vec) {
    const auto makeRoom = [](void* data, int32_t length) {
        return resize(static_cast<Vector*>(data), length);
    };
    if constexpr (PlainElement<T>) {
        return ArrayCalls<T>::kRead(parcel, vec, [](void* data, int32_t length, T** buffer) {
            auto* to = static_cast<Vector*>(data);
            if (!resize(to, length)) {
                return false;
            }
            *buffer = length > 0 ? elementsOf(*to).data() : nullptr;
            return true;
        });
    } else if constexpr (std::is_same_v<T, uint8_t>) {
        return AParcel_readByteArray(parcel, vec, [](void* data, int32_t length, int8_t** buffer) {
            auto* to = static_cast<Vector*>(data);
            if (!resize(to, length)) {
                return false;
            }
            void* bytes = length > 0 ? elementsOf(*to).data() : nullptr;
            *buffer = static_cast<int8_t*>(bytes);
            return true;
        });
    } else if constexpr (std::is_same_v<T, bool>) {
        return AParcel_readBoolArray(parcel, vec, makeRoom,
                                     [](void* data, size_t index, bool value) {
                                         elementsOf(*static_cast<Vector*>(data))[index] = value;
                                     });
    } else {
        return AParcel_readParcelableArray(
                parcel, vec, makeRoom, [](const AParcel* from, void* data, size_t index) {
                    return readElement(from, &elementsOf(*static_cast<Vector*>(data))[index]);
                });
    }
}

}  // namespace impl

template <typename T>
binder_status_t AParcel_writeVector(AParcel* parcel, const std::vector<T>& vec) {
    return impl::writeVector(parcel, &vec);
}
template <typename T>
binder_status_t AParcel_writeVector(AParcel* parcel, const std::optional<std::vector<T>>& vec) {
    return impl::writeVector(parcel, vec ? &*vec : nullptr);
}
template <typename T>
binder_status_t AParcel_readVector(const AParcel* parcel, std::vector<T>* vec) {
    return impl::readVector<T>(parcel, vec);
}
template <typename T>
binder_status_t AParcel_readVector(const AParcel* parcel, std::optional<std::vector<T>>* vec) {
    return impl::readVector<T>(parcel, vec);
}

/** Only the length: the called side fills such a vector. */
template <typename T>
binder_status_t AParcel_writeVectorSize(AParcel* parcel, const std::vector<T>& vec) {
    return vec.size() <= static_cast<size_t>(std::numeric_limits<int32_t>::max())
                   ? AParcel_writeInt32(parcel, static_cast<int32_t>(vec.size()))
                   : STATUS_BAD_VALUE;
}
template <typename T>
binder_status_t AParcel_writeVectorSize(AParcel* parcel, const std::optional<std::vector<T>>& vec) {
    return vec ? AParcel_writeVectorSize(parcel, *vec) : AParcel_writeInt32(parcel, -1);
}

/** No data stands behind these lengths, so more elements than this are refused. */
constexpr int32_t kMaxEmptyElements = 1'000'000;

/** Reads a length and makes that many elements; STATUS_NO_MEMORY for too many. */
template <typename Vector>
binder_status_t AParcel_resizeVector(const AParcel* parcel, Vector* vec) {
    int32_t length;
    if (const binder_status_t status = AParcel_readInt32(parcel, &length); status != STATUS_OK) {
        return status;
    }
    if (length < -1) {
        return STATUS_BAD_VALUE;
    }
    if (length > kMaxEmptyElements) {
        return STATUS_NO_MEMORY;
    }
    return impl::resize(vec, length) ? STATUS_OK : STATUS_UNEXPECTED_NULL;
}

}  // namespace ndk
