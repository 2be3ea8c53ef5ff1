// Bytes, numbers and parcelables.

#include <binder/Parcel.h>

#include <algorithm>
#include <cstring>

#include "ParcelLimits.h"

namespace android {

void* Parcel::writeInplace(size_t len) {
    if (len > kMaxParcelBytes - kParcelWordBytes) {
        return nullptr;
    }
    const size_t padded = paddedSize(len);
    // Nothing written to an empty parcel needs an address too: a null pointer means failure.
    if (growData(padded) != OK || continueWrite(std::max(mDataCapacity, size_t{1})) != OK) {
        return nullptr;
    }
    uint8_t* start = mData + mDataPos;
    memset(start + len, 0, padded - len);
    finishWrite(padded);
    return start;
}

status_t Parcel::write(const void* data, size_t len) {
    if (len > kMaxParcelBytes) {
        return BAD_VALUE;
    }
    void* const start = writeInplace(len);
    if (start == nullptr) {
        return mError != OK ? mError : BAD_VALUE;
    }
    if (len > 0) {
        memcpy(start, data, len);
    }
    return OK;
}

const void* Parcel::readInplace(size_t len) const {
    if (len > kMaxParcelBytes || mDataPos > mDataSize) {
        return nullptr;
    }
    const size_t padded = paddedSize(len);
    if (padded > mDataSize - mDataPos || validateReadData(padded) != OK) {
        return nullptr;
    }
    // The address of nothing in an empty parcel, as for writing.
    static constexpr uint8_t kNothing = 0;
    const uint8_t* start = mData != nullptr ? mData + mDataPos : &kNothing;
    mDataPos += padded;
    return start;
}

status_t Parcel::read(void* outData, size_t len) const {
    const void* start = readInplace(len);
    if (start == nullptr) {
        return NOT_ENOUGH_DATA;
    }
    if (len > 0) {
        memcpy(outData, start, len);
    }
    return OK;
}

template <class T>
status_t Parcel::writeAligned(T val) {
    static_assert(sizeof(T) % kParcelWordBytes == 0);
    if (const status_t status = growData(sizeof(val)); status != OK) {
        return status;
    }
    memcpy(mData + mDataPos, &val, sizeof(val));
    return finishWrite(sizeof(val));
}

template <class T>
status_t Parcel::readAligned(T* pArg) const {
    static_assert(sizeof(T) % kParcelWordBytes == 0);
    if (mDataPos > mDataSize || mDataSize - mDataPos < sizeof(T)) {
        return NOT_ENOUGH_DATA;
    }
    if (const status_t status = validateReadData(sizeof(T)); status != OK) {
        return status;
    }
    memcpy(pArg, mData + mDataPos, sizeof(T));
    mDataPos += sizeof(T);
    return OK;
}

template <class T>
T Parcel::readAligned() const {
    T value = {};
    readAligned(&value);
    return value;
}

status_t Parcel::writeInt32(int32_t val) {
    return writeAligned(val);
}

status_t Parcel::writeUint32(uint32_t val) {
    return writeAligned(val);
}

status_t Parcel::writeInt64(int64_t val) {
    return writeAligned(val);
}

status_t Parcel::writeUint64(uint64_t val) {
    return writeAligned(val);
}

status_t Parcel::writeFloat(float val) {
    return writeAligned(val);
}

status_t Parcel::writeDouble(double val) {
    return writeAligned(val);
}

status_t Parcel::writeBool(bool val) {
    return writeInt32(val ? 1 : 0);
}

status_t Parcel::writeChar(char16_t val) {
    return writeInt32(val);
}

status_t Parcel::writeByte(int8_t val) {
    return writeInt32(val);
}

status_t Parcel::readInt32(int32_t* pArg) const {
    return readAligned(pArg);
}

int32_t Parcel::readInt32() const {
    return readAligned<int32_t>();
}

status_t Parcel::readUint32(uint32_t* pArg) const {
    return readAligned(pArg);
}

uint32_t Parcel::readUint32() const {
    return readAligned<uint32_t>();
}

status_t Parcel::readInt64(int64_t* pArg) const {
    return readAligned(pArg);
}

int64_t Parcel::readInt64() const {
    return readAligned<int64_t>();
}

status_t Parcel::readFloat(float* pArg) const {
    return readAligned(pArg);
}

float Parcel::readFloat() const {
    return readAligned<float>();
}

status_t Parcel::readDouble(double* pArg) const {
    return readAligned(pArg);
}

status_t Parcel::readBool(bool* pArg) const {
    int32_t word = 0;
    const status_t status = readInt32(&word);
    *pArg = word != 0;
    return status;
}

bool Parcel::readBool() const {
    return readInt32() != 0;
}

status_t Parcel::readChar(char16_t* pArg) const {
    int32_t word = 0;
    const status_t status = readInt32(&word);
    *pArg = static_cast<char16_t>(word);
    return status;
}

status_t Parcel::readByte(int8_t* pArg) const {
    int32_t word = 0;
    const status_t status = readInt32(&word);
    *pArg = static_cast<int8_t>(word);
    return status;
}

status_t Parcel::writeParcelable(const Parcelable& parcelable) {
    const status_t status = writeInt32(1);
    return status != OK ? status : parcelable.writeToParcel(this);
}

status_t Parcel::writeRawNullableParcelable(const Parcelable* parcelable) {
    return parcelable != nullptr ? writeParcelable(*parcelable) : writeInt32(0);
}

status_t Parcel::readParcelable(Parcelable* parcelable) const {
    int32_t present;
    if (const status_t status = readInt32(&present); status != OK) {
        return status;
    }
    return present != 0 ? parcelable->readFromParcel(this) : UNEXPECTED_NULL;
}

}  // namespace android
