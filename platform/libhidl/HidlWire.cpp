#include <hidl_linux/HidlWire.h>

namespace android::hardware::details {

const uint8_t* readBytes(const Parcel& parcel, size_t* size) {
    static constexpr uint8_t kNothing = 0;
    uint32_t length = 0;
    if (parcel.readUint32(&length) != OK || length > parcel.dataAvail()) {
        return nullptr;
    }
    *size = length;
    return length == 0 ? &kNothing : static_cast<const uint8_t*>(parcel.readInplace(length));
}

status_t writeBytes(Parcel* parcel, const void* bytes, size_t size) {
    if (size > std::numeric_limits<int32_t>::max()) {
        return BAD_VALUE;
    }
    const status_t status = parcel->writeUint32(static_cast<uint32_t>(size));
    return status != OK || size == 0 ? status : parcel->write(bytes, size);
}

status_t Wire<hidl_string>::read(const Parcel& parcel, hidl_string* value) {
    size_t size = 0;
    const uint8_t* bytes = readBytes(parcel, &size);
    if (bytes == nullptr) {
        return BAD_VALUE;
    }
    *value = hidl_string(reinterpret_cast<const char*>(bytes), size);
    return OK;
}

status_t Wire<hidl_vec<uint8_t>>::read(const Parcel& parcel, hidl_vec<uint8_t>* value) {
    size_t size = 0;
    const uint8_t* bytes = readBytes(parcel, &size);
    if (bytes == nullptr) {
        return BAD_VALUE;
    }
    *value = hidl_vec<uint8_t>(bytes, bytes + size);
    return OK;
}

}  // namespace android::hardware::details
