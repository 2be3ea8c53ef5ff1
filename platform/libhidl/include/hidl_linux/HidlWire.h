#pragma once

#include <binder/Parcel.h>
#include <hidl/HidlBinderSupport.h>

#include <concepts>
#include <cstdint>
#include <tuple>
#include <type_traits>
#include <utility>

namespace android::hardware::details {

/**
 * How a value lies in a parcel: `write`, `read`, and the fewest bytes one takes, against which a
 * count is checked before memory is taken. Statuses are OK or what is wrong with the parcel.
 */
template <typename T>
struct Wire;

/** A parcel's bytes of a length that stands before them; null when they are not all there. */
const uint8_t* readBytes(const Parcel& parcel, size_t* size);
status_t writeBytes(Parcel* parcel, const void* bytes, size_t size);

/** Numbers, bools and enums: 4 bytes, or 8 when they do not fit there. */
template <typename T>
requires(std::is_integral_v<T> || std::is_enum_v<T>) struct Wire<T> {
    static constexpr size_t kMinimum = sizeof(T) == sizeof(int64_t) ? 8 : 4;

    static status_t write(Parcel* parcel, T value) {
        if constexpr (kMinimum == sizeof(int64_t)) {
            return parcel->writeInt64(static_cast<int64_t>(value));
        } else {
            return parcel->writeInt32(static_cast<int32_t>(value));
        }
    }
    static status_t read(const Parcel& parcel, T* value) {
        std::conditional_t<kMinimum == sizeof(int64_t), int64_t, int32_t> raw = 0;
        const status_t status = readRaw(parcel, &raw);
        *value = static_cast<T>(raw);
        // What does not come back was not written from a T; a bool is anything but 0.
        const bool fits = std::is_same_v<T, bool> || static_cast<decltype(raw)>(*value) == raw;
        return status != OK || fits ? status : BAD_VALUE;
    }

  private:
    static status_t readRaw(const Parcel& parcel, int32_t* raw) { return parcel.readInt32(raw); }
    static status_t readRaw(const Parcel& parcel, int64_t* raw) { return parcel.readInt64(raw); }
};

template <>
struct Wire<hidl_string> {
    static constexpr size_t kMinimum = sizeof(uint32_t);
    static status_t write(Parcel* parcel, const hidl_string& value) {
        return writeBytes(parcel, value.c_str(), value.size());
    }
    static status_t read(const Parcel& parcel, hidl_string* value);
};

template <>
struct Wire<hidl_vec<uint8_t>> {
    static constexpr size_t kMinimum = sizeof(uint32_t);
    static status_t write(Parcel* parcel, const hidl_vec<uint8_t>& value) {
        return writeBytes(parcel, value.data(), value.size());
    }
    static status_t read(const Parcel& parcel, hidl_vec<uint8_t>* value);
};

template <typename T>
struct Wire<hidl_vec<T>> {
    static constexpr size_t kMinimum = sizeof(uint32_t);

    static status_t write(Parcel* parcel, const hidl_vec<T>& values) {
        status_t status = Wire<uint32_t>::write(parcel, static_cast<uint32_t>(values.size()));
        for (const T& value : values) {
            status = status != OK ? status : Wire<T>::write(parcel, value);
        }
        return status;
    }
    static status_t read(const Parcel& parcel, hidl_vec<T>* values) {
        uint32_t count = 0;
        status_t status = parcel.readUint32(&count);
        if (status == OK && count > parcel.dataAvail() / Wire<T>::kMinimum) {
            status = BAD_VALUE;
        }
        values->resize(status == OK ? count : 0);
        for (T* value = values->begin(); status == OK && value != values->end(); ++value) {
            status = Wire<T>::read(parcel, value);
        }
        return status;
    }
};

/** An object of an interface, or null. */
template <std::derived_from<hidl::base::V1_0::IBase> I>
struct Wire<sp<I>> {
    static constexpr size_t kMinimum = sizeof(uint32_t);

    static status_t write(Parcel* parcel, const sp<I>& object) {
        return parcel->writeStrongBinder(toBinder(object));
    }
    static status_t read(const Parcel& parcel, sp<I>* object) {
        sp<IBinder> binder;
        const status_t status = parcel.readNullableStrongBinder(&binder);
        *object = status == OK ? fromBinder<I>(binder) : nullptr;
        return status == OK && binder != nullptr && *object == nullptr ? BAD_TYPE : status;
    }
};

/** Several values, one after the other. */
template <typename... T>
struct Wire<std::tuple<T...>> {
    static constexpr size_t kMinimum = (0 + ... + Wire<std::remove_cvref_t<T>>::kMinimum);

    static status_t write(Parcel* parcel, const std::tuple<T...>& values) {
        status_t status = OK;
        const auto writeOne = [&](const auto& value) {
            status = Wire<std::remove_cvref_t<decltype(value)>>::write(parcel, value);
            return status == OK;
        };
        std::apply([&](const auto&... value) { (void)(... && writeOne(value)); }, values);
        return status;
    }
    /** T may be references, through which the values are set. */
    static status_t read(const Parcel& parcel, std::tuple<T...>* values) {
        status_t status = OK;
        const auto readOne = [&](auto& value) {
            status = Wire<std::remove_cvref_t<decltype(value)>>::read(parcel, &value);
            return status == OK;
        };
        std::apply([&](auto&... value) { (void)(... && readOne(value)); }, *values);
        return status;
    }
};

/** A structure whose `fieldsOf()`, in its own namespace, ties its fields in their order. */
template <typename T>
requires requires(T& value) {
    fieldsOf(value);
}
struct Wire<T> {
    using Fields = decltype(fieldsOf(std::declval<T&>()));
    using ConstFields = decltype(fieldsOf(std::declval<const T&>()));
    static constexpr size_t kMinimum = Wire<Fields>::kMinimum;

    static status_t write(Parcel* parcel, const T& value) {
        return Wire<ConstFields>::write(parcel, fieldsOf(value));
    }
    static status_t read(const Parcel& parcel, T* value) {
        Fields fields = fieldsOf(*value);
        return Wire<Fields>::read(parcel, &fields);
    }
};

}  // namespace android::hardware::details
