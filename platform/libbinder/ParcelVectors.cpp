// Vectors: a count (-1: null), then the elements one behind the other.

#include <binder/Parcel.h>

#include <cstring>
#include <utility>

#include "FlatObject.h"
#include "ParcelLimits.h"

namespace android {

namespace {

// Least room that an element takes: it tells a count that a parcel cannot hold.
constexpr size_t kLeastStringBytes = sizeof(int32_t);
constexpr size_t kLeastBinderBytes = sizeof(flat_binder_object) + sizeof(int32_t);

/** Refuses a count that the rest of the parcel cannot hold, before anything is allocated. */
status_t readCount(const Parcel& parcel, size_t leastElementBytes, size_t* count) {
    int32_t word;
    if (const status_t status = parcel.readInt32(&word); status != OK) {
        return status;
    }
    if (word < 0) {
        return UNEXPECTED_NULL;
    }
    *count = static_cast<size_t>(word);
    return *count <= parcel.dataAvail() / leastElementBytes ? OK : NOT_ENOUGH_DATA;
}

/** Elements that lie in the parcel as they lie in memory. */
template <typename T>
status_t writeFlat(Parcel* parcel, const std::vector<T>& values) {
    if (values.size() > kMaxParcelBytes / sizeof(T)) {
        return BAD_VALUE;
    }
    if (const status_t status = parcel->writeVectorSize(values); status != OK) {
        return status;
    }
    return parcel->write(values.data(), values.size() * sizeof(T));
}

template <typename T>
status_t readFlat(const Parcel& parcel, std::vector<T>* values) {
    values->clear();
    size_t count;
    if (const status_t status = readCount(parcel, sizeof(T), &count); status != OK) {
        return status;
    }
    const void* start = parcel.readInplace(count * sizeof(T));
    if (start == nullptr) {
        return NOT_ENOUGH_DATA;
    }
    values->resize(count);
    if (count > 0) {
        memcpy(values->data(), start, count * sizeof(T));
    }
    return OK;
}

/** Elements that are each written by a function. */
template <typename T, typename Write>
status_t writeEach(Parcel* parcel, const std::vector<T>& values, Write write) {
    status_t status = parcel->writeVectorSize(values);
    for (size_t i = 0; i < values.size() && status == OK; ++i) {
        status = write(values[i]);
    }
    return status;
}

template <typename T, typename Read>
status_t readEach(const Parcel& parcel, size_t leastElementBytes, std::vector<T>* values,
                  Read read) {
    values->clear();
    size_t count = 0;
    status_t status = readCount(parcel, leastElementBytes, &count);
    std::vector<T> found(status == OK ? count : 0);
    for (size_t i = 0; i < found.size() && status == OK; ++i) {
        T value{};
        status = read(&value);
        found[i] = std::move(value);
    }
    if (status == OK) {
        values->swap(found);
    }
    return status;
}

}  // namespace

status_t Parcel::writeInt32Vector(const std::vector<int32_t>& val) {
    return writeFlat(this, val);
}

status_t Parcel::readInt32Vector(std::vector<int32_t>* val) const {
    return readFlat(*this, val);
}

status_t Parcel::readInt64Vector(std::vector<int64_t>* val) const {
    return readFlat(*this, val);
}

status_t Parcel::writeByteVector(const std::vector<int8_t>& val) {
    return writeFlat(this, val);
}

status_t Parcel::readByteVector(std::vector<int8_t>* val) const {
    return readFlat(*this, val);
}

status_t Parcel::writeByteVector(const std::vector<uint8_t>& val) {
    return writeFlat(this, val);
}

status_t Parcel::readByteVector(std::vector<uint8_t>* val) const {
    return readFlat(*this, val);
}

status_t Parcel::writeBoolVector(const std::vector<bool>& val) {
    return writeEach(this, val, [&](bool value) { return writeBool(value); });
}

status_t Parcel::readBoolVector(std::vector<bool>* val) const {
    return readEach(*this, sizeof(int32_t), val, [&](bool* value) { return readBool(value); });
}

status_t Parcel::writeString16Vector(const std::vector<String16>& val) {
    return writeEach(this, val, [&](const auto& value) { return writeString16(value); });
}

status_t Parcel::readString16Vector(std::vector<String16>* val) const {
    return readEach(*this, kLeastStringBytes, val,
                    [&](auto* value) { return readString16(value); });
}

status_t Parcel::writeUtf8VectorAsUtf16Vector(const std::vector<std::string>& val) {
    return writeEach(this, val, [&](const auto& value) { return writeUtf8AsUtf16(value); });
}

status_t Parcel::readUtf8VectorFromUtf16Vector(std::vector<std::string>* val) const {
    return readEach(*this, kLeastStringBytes, val,
                    [&](auto* value) { return readUtf8FromUtf16(value); });
}

status_t Parcel::readStrongBinderVector(std::vector<sp<IBinder>>* val) const {
    return readEach(*this, kLeastBinderBytes, val,
                    [&](sp<IBinder>* value) { return readStrongBinder(value); });
}

}  // namespace android
