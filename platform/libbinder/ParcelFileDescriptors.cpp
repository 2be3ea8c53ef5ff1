// Descriptors in other forms: Java's parcel file descriptors, vectors, native handles.

#include <binder/Parcel.h>
#include <binder/ParcelFileDescriptor.h>
#include <fcntl.h>

#include <memory>

#include "FlatObject.h"
#include "NullableValues.h"

namespace android {

namespace {

// Java's class may have a second descriptor, on which it tells of errors. None comes from here.
constexpr int32_t kNoCommChannel = 0;

}  // namespace

status_t Parcel::writeParcelFileDescriptor(int fd, bool takeOwnership) {
    const status_t status = writeInt32(kNoCommChannel);
    return status != OK ? status : writeFileDescriptor(fd, takeOwnership);
}

status_t Parcel::writeDupParcelFileDescriptor(int fd) {
    const status_t status = writeInt32(kNoCommChannel);
    return status != OK ? status : writeDupFileDescriptor(fd);
}

int Parcel::readParcelFileDescriptor() const {
    int32_t hasCommChannel;
    if (readInt32(&hasCommChannel) != OK) {
        return BAD_TYPE;
    }
    const int fd = readFileDescriptor();
    if (fd != BAD_TYPE && hasCommChannel != kNoCommChannel) {
        readFileDescriptor();
    }
    return fd;
}

status_t Parcel::readUniqueParcelFileDescriptor(base::unique_fd* val) const {
    const int fd = readParcelFileDescriptor();
    if (fd == BAD_TYPE) {
        return BAD_TYPE;
    }
    val->reset(fcntl(fd, F_DUPFD_CLOEXEC, 0));
    return val->get() < 0 ? BAD_VALUE : OK;
}

status_t Parcel::writeUniqueFileDescriptorVector(const std::vector<base::unique_fd>& val) {
    return unsafeWriteTypedVector<base::unique_fd, const base::unique_fd&>(
            val, &Parcel::writeUniqueFileDescriptor);
}

status_t Parcel::writeUniqueFileDescriptorVector(
        const std::unique_ptr<std::vector<base::unique_fd>>& val) {
    return val != nullptr ? writeUniqueFileDescriptorVector(*val) : writeInt32(kNullCount);
}

status_t Parcel::readUniqueFileDescriptorVector(std::vector<base::unique_fd>* val) const {
    val->clear();
    int32_t count;
    if (const status_t status = readInt32(&count); status != OK) {
        return status;
    }
    if (count < 0) {
        return UNEXPECTED_NULL;
    }
    // Each is an object: a count beyond those is refused before memory is taken.
    if (static_cast<size_t>(count) > objectsCount()) {
        return NOT_ENOUGH_DATA;
    }
    for (; count > 0; --count) {
        base::unique_fd fd;
        if (const status_t status = readUniqueFileDescriptor(&fd); status != OK) {
            return status;
        }
        val->push_back(std::move(fd));
    }
    return OK;
}

status_t Parcel::readUniqueFileDescriptorVector(
        std::unique_ptr<std::vector<base::unique_fd>>* val) const {
    return readNullable(*this, val, [this](std::vector<base::unique_fd>* values) {
        return readUniqueFileDescriptorVector(values);
    });
}

status_t Parcel::writeNativeHandle(const native_handle* handle) {
    if (handle == nullptr || handle->version != sizeof(native_handle) || handle->numFds < 0 ||
        handle->numInts < 0) {
        return BAD_TYPE;
    }
    status_t status = writeInt32(handle->numFds);
    if (status == OK) {
        status = writeInt32(handle->numInts);
    }
    for (int i = 0; status == OK && i < handle->numFds; ++i) {
        status = writeDupFileDescriptor(handle->data[i]);
    }
    return status != OK ? status
                        : write(handle->data + handle->numFds,
                                sizeof(int) * static_cast<size_t>(handle->numInts));
}

native_handle* Parcel::readNativeHandle() const {
    int32_t fdCount;
    int32_t intCount;
    if (readInt32(&fdCount) != OK || readInt32(&intCount) != OK || fdCount < 0 || intCount < 0 ||
        static_cast<size_t>(fdCount) > objectsCount()) {
        return nullptr;
    }
    native_handle* handle = native_handle_create(fdCount, intCount);
    if (handle == nullptr) {
        return nullptr;
    }
    handle->numFds = 0;  // those that are there already
    bool complete = true;
    while (complete && handle->numFds < fdCount) {
        base::unique_fd fd;
        complete = readUniqueFileDescriptor(&fd) == OK;
        if (complete) {
            handle->data[handle->numFds++] = fd.release();
        }
    }
    if (!complete ||
        read(handle->data + fdCount, sizeof(int) * static_cast<size_t>(intCount)) != OK) {
        native_handle_close(handle);
        native_handle_delete(handle);
        return nullptr;
    }
    return handle;
}

namespace os {

ParcelFileDescriptor::ParcelFileDescriptor() = default;

ParcelFileDescriptor::ParcelFileDescriptor(base::unique_fd fd) : mFd(std::move(fd)) {}

ParcelFileDescriptor::~ParcelFileDescriptor() = default;

status_t ParcelFileDescriptor::writeToParcel(Parcel* parcel) const {
    return parcel->writeDupParcelFileDescriptor(mFd.get());
}

status_t ParcelFileDescriptor::readFromParcel(const Parcel* parcel) {
    return parcel->readUniqueParcelFileDescriptor(&mFd);
}

}  // namespace os

}  // namespace android
