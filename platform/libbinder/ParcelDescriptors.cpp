// File descriptors in a parcel.

#include <binder/Parcel.h>
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "FlatObject.h"

namespace android {

bool Parcel::hasFileDescriptors() const {
    if (!mFdsKnown) {
        scanForFds();
    }
    return mHasFds;
}

void Parcel::scanForFds() const {
    mHasFds = false;
    for (size_t i = 0; i < mObjectsSize && !mHasFds; ++i) {
        mHasFds = objectAt(mData, mObjects[i]).hdr.type == BINDER_TYPE_FD;
    }
    mFdsKnown = true;
}

status_t Parcel::writeFileDescriptor(int fd, bool takeOwnership) {
    return writeObject(flatDescriptor(fd, takeOwnership), true);
}

status_t Parcel::writeDupFileDescriptor(int fd) {
    flat_binder_object object = flatDescriptor(fd, false);
    status_t status = duplicateDescriptor(&object);
    if (status == OK) {
        status = writeObject(object, true);
        if (status != OK) {
            close(static_cast<int>(object.handle));
        }
    }
    return status;
}

status_t Parcel::writeUniqueFileDescriptor(const base::unique_fd& fd) {
    return writeDupFileDescriptor(fd.get());
}

int Parcel::readFileDescriptor() const {
    const flat_binder_object* found = readObject(true);
    if (found == nullptr) {
        return BAD_TYPE;
    }
    const flat_binder_object object = objectAt(reinterpret_cast<const uint8_t*>(found), 0);
    return object.hdr.type == BINDER_TYPE_FD ? static_cast<int>(object.handle) : BAD_TYPE;
}

status_t Parcel::readUniqueFileDescriptor(base::unique_fd* val) const {
    const int fd = readFileDescriptor();
    if (fd == BAD_TYPE) {
        return BAD_TYPE;
    }
    val->reset(fcntl(fd, F_DUPFD_CLOEXEC, 0));
    return val->get() < 0 ? BAD_VALUE : OK;
}

}  // namespace android
