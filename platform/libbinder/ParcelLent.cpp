// A parcel in memory that the driver lent, and what the driver needs to know of one.

#include <binder/Parcel.h>
#include <log/log.h>
#include <unistd.h>

#include <cstring>
#include <utility>

#include "FlatObject.h"
#include "ParcelLimits.h"

namespace android {

uintptr_t Parcel::ipcData() const {
    return reinterpret_cast<uintptr_t>(mData);
}

size_t Parcel::ipcDataSize() const {
    return dataSize();
}

uintptr_t Parcel::ipcObjects() const {
    return reinterpret_cast<uintptr_t>(mObjects);
}

size_t Parcel::ipcObjectsCount() const {
    return mObjectsSize;
}

/**
 * Takes over memory until `relFunc` gives it back. It is only read: the parcel's capacity stays 0,
 * so that the first write makes a copy (continueWrite).
 */
void Parcel::ipcSetDataReference(const uint8_t* data, size_t dataSize, const binder_size_t* objects,
                                 size_t objectsCount, release_func relFunc, void* relCookie) {
    freeData();
    mData = const_cast<uint8_t*>(data);
    mDataSize = dataSize;
    mObjects = const_cast<binder_size_t*>(objects);
    mObjectsSize = objectsCount;
    mOwner = relFunc;
    mOwnerCookie = relCookie;
    mFdsKnown = false;
    if (dataSize > kMaxParcelBytes) {
        ALOGE("a received parcel of %zu bytes is too long: it is taken as empty", dataSize);
        mDataSize = 0;
        mObjectsSize = 0;
        mError = BAD_VALUE;
    } else if (!areValidObjects(data, dataSize, objects, objectsCount)) {
        // As on Android: what other libraries send is delivered, but what is no object here is
        // none.
        ALOGE("a received parcel has objects of another kind: none of its objects is read");
        closeDescriptors(data, dataSize, objects, objectsCount);
        mObjectsSize = 0;
    }
}

/** Makes the objects of memory that was copied the parcel's own; it takes over the descriptors. */
void Parcel::acquireObjects() {
    const size_t position = mDataPos;
    const binder_size_t* const lent = std::exchange(mObjects, nullptr);
    const size_t count = std::exchange(mObjectsSize, 0);
    for (size_t i = 0; i < count; ++i) {
        flat_binder_object object = objectAt(mData, lent[i]);
        if (object.hdr.type == BINDER_TYPE_FD) {
            object = flatDescriptor(static_cast<int>(object.handle), true);
        }
        mDataPos = lent[i];
        if (const status_t status = writeObject(object, true); status != OK) {
            mError = status;
        }
    }
    mDataPos = position;
}

void Parcel::closeFileDescriptors() {
    if (mOwner != nullptr && continueWrite(mDataSize) != OK) {
        return;
    }
    closeDescriptors(mData, mDataSize, mObjects, mObjectsSize);
    // What is closed is no longer owned, and its number may soon be someone else's.
    const flat_binder_object closed = flatDescriptor(-1, false);
    for (size_t i = 0; i < mObjectsSize; ++i) {
        if (objectAt(mData, mObjects[i]).hdr.type == BINDER_TYPE_FD) {
            memcpy(mData + mObjects[i], &closed, sizeof(closed));
        }
    }
}

}  // namespace android
