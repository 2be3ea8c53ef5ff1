#pragma once

#include <android/binder_auto_utils.h>
#include <android/binder_parcel.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>

// Single C++ values in parcels: strings, binders, files. Comes with binder_parcel_utils.h.

namespace ndk {

inline binder_status_t AParcel_writeString(AParcel* parcel, const std::string& str) {
    if (str.size() > static_cast<size_t>(std::numeric_limits<int32_t>::max())) {
        return STATUS_BAD_VALUE;
    }
    return ::AParcel_writeString(parcel, str.c_str(), static_cast<int32_t>(str.size()));
}

inline binder_status_t AParcel_writeString(AParcel* parcel, const std::optional<std::string>& str) {
    return str ? AParcel_writeString(parcel, *str) : ::AParcel_writeString(parcel, nullptr, -1);
}

inline binder_status_t AParcel_readString(const AParcel* parcel, std::string* str) {
    return ::AParcel_readString(parcel, str, [](void* data, int32_t length, char** buffer) {
        if (length <= 0) {
            return false;
        }
        auto* text = static_cast<std::string*>(data);
        text->resize(static_cast<size_t>(length) - 1);
        *buffer = text->data();
        return true;
    });
}

inline binder_status_t AParcel_readString(const AParcel* parcel, std::optional<std::string>* str) {
    return ::AParcel_readString(parcel, str, [](void* data, int32_t length, char** buffer) {
        auto* text = static_cast<std::optional<std::string>*>(data);
        text->reset();
        if (length > 0) {
            text->emplace(static_cast<size_t>(length) - 1, '\0');
            *buffer = (*text)->data();
        }
        return true;
    });
}

inline binder_status_t AParcel_writeNullableStrongBinder(AParcel* parcel,
                                                         const SpAIBinder& binder) {
    return AParcel_writeStrongBinder(parcel, binder.get());
}

inline binder_status_t AParcel_readNullableStrongBinder(const AParcel* parcel, SpAIBinder* binder) {
    return AParcel_readStrongBinder(parcel, binder->getR());
}

inline binder_status_t AParcel_writeRequiredStrongBinder(AParcel* parcel,
                                                         const SpAIBinder& binder) {
    return binder ? AParcel_writeStrongBinder(parcel, binder.get()) : STATUS_UNEXPECTED_NULL;
}

inline binder_status_t AParcel_readRequiredStrongBinder(const AParcel* parcel, SpAIBinder* binder) {
    const binder_status_t status = AParcel_readNullableStrongBinder(parcel, binder);
    return status == STATUS_OK && !*binder ? STATUS_UNEXPECTED_NULL : status;
}

inline binder_status_t AParcel_writeNullableParcelFileDescriptor(AParcel* parcel,
                                                                 const ScopedFileDescriptor& fd) {
    return AParcel_writeParcelFileDescriptor(parcel, fd.get());
}

inline binder_status_t AParcel_readNullableParcelFileDescriptor(const AParcel* parcel,
                                                                ScopedFileDescriptor* fd) {
    int found = -1;
    const binder_status_t status = AParcel_readParcelFileDescriptor(parcel, &found);
    fd->set(found);
    return status;
}

inline binder_status_t AParcel_writeRequiredParcelFileDescriptor(AParcel* parcel,
                                                                 const ScopedFileDescriptor& fd) {
    return fd.get() >= 0 ? AParcel_writeParcelFileDescriptor(parcel, fd.get())
                         : STATUS_UNEXPECTED_NULL;
}

inline binder_status_t AParcel_readRequiredParcelFileDescriptor(const AParcel* parcel,
                                                                ScopedFileDescriptor* fd) {
    const binder_status_t status = AParcel_readNullableParcelFileDescriptor(parcel, fd);
    return status == STATUS_OK && fd->get() < 0 ? STATUS_UNEXPECTED_NULL : status;
}

}  // namespace ndk
