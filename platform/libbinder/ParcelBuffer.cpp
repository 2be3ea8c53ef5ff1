// Memory of a parcel: size, position, growth, copies of whole ranges.

#include <binder/Parcel.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "FlatObject.h"
#include "ParcelLimits.h"

namespace android {

Parcel::Parcel() {
    initState();
}

Parcel::~Parcel() {
    freeDataNoInit();
}

void Parcel::initState() {
    mError = NO_ERROR;
    mData = nullptr;
    mDataSize = 0;
    mDataCapacity = 0;
    mDataPos = 0;
    mObjects = nullptr;
    mObjectsSize = 0;
    mObjectsCapacity = 0;
    mNextObjectHint = 0;
    mObjectsSorted = true;
    mRequestHeaderPresent = false;
    mWorkSourceRequestHeaderPosition = 0;
    mFdsKnown = true;
    mHasFds = false;
    mAllowFds = true;
    mOwner = nullptr;
    mOwnerCookie = nullptr;
    mOpenAshmemSize = 0;
}

void Parcel::freeDataNoInit() {
    if (mOwner != nullptr) {
        mOwner(this, mData, mDataSize, mObjects, mObjectsSize, mOwnerCookie);
        return;
    }
    releaseObjects();
    free(mData);
    free(mObjects);
}

void Parcel::freeData() {
    freeDataNoInit();
    initState();
}

const uint8_t* Parcel::data() const {
    return mData;
}

size_t Parcel::dataSize() const {
    return std::max(mDataSize, mDataPos);
}

size_t Parcel::dataAvail() const {
    return dataSize() - mDataPos;
}

size_t Parcel::dataPosition() const {
    return mDataPos;
}

size_t Parcel::dataCapacity() const {
    return mDataCapacity;
}

status_t Parcel::errorCheck() const {
    return mError;
}

void Parcel::setError(status_t err) {
    mError = err;
}

void Parcel::setDataPosition(size_t pos) const {
    mDataPos = std::min(pos, kMaxParcelBytes);
}

status_t Parcel::setDataCapacity(size_t size) {
    if (size > kMaxParcelBytes) {
        return BAD_VALUE;
    }
    return size > mDataCapacity ? continueWrite(size) : OK;
}

status_t Parcel::setDataSize(size_t size) {
    if (size > kMaxParcelBytes) {
        return BAD_VALUE;
    }
    if (const status_t status = continueWrite(size); status != OK) {
        return status;
    }
    while (mObjectsSize > 0 && mObjects[mObjectsSize - 1] + sizeof(flat_binder_object) > size) {
        releaseObject(objectAt(mData, mObjects[--mObjectsSize]), this);
    }
    if (size > mDataSize) {
        memset(mData + mDataSize, 0, size - mDataSize);
    }
    mDataSize = size;
    mDataPos = std::min(mDataPos, size);
    return OK;
}

/**
 * Makes the capacity at least `desired`; the new memory is not cleared. A parcel whose memory the
 * driver lent (its capacity is 0) has memory of its own afterwards.
 */
status_t Parcel::continueWrite(size_t desired) {
    if (mOwner == nullptr && desired <= mDataCapacity) {
        return OK;
    }
    const bool lent = mOwner != nullptr;
    const size_t capacity = lent ? std::max({desired, mDataSize, size_t{1}}) : desired;
    void* data = realloc(lent ? nullptr : mData, capacity);
    if (data == nullptr) {
        mError = NO_MEMORY;
        return NO_MEMORY;
    }
    mDataCapacity = capacity;
    uint8_t* const before = std::exchange(mData, static_cast<uint8_t*>(data));
    if (lent) {
        if (mDataSize > 0) {
            memcpy(mData, before, mDataSize);
        }
        const binder_size_t* const objects = mObjects;
        const size_t count = mObjectsSize;
        const release_func release = std::exchange(mOwner, nullptr);
        acquireObjects();
        release(nullptr, before, mDataSize, objects, count, mOwnerCookie);
    }
    return OK;
}

/** Makes room for `len` bytes at the present position, where no object may stand. */
status_t Parcel::growData(size_t len) {
    if (len > kMaxParcelBytes || mDataPos > kMaxParcelBytes - len) {
        return BAD_VALUE;
    }
    // An object that was written over could neither be read nor be released.
    if (const status_t status = validateReadData(len); status != OK) {
        return status;
    }
    const size_t end = mDataPos + len;
    const size_t desired = std::min(end + end / 2, kMaxParcelBytes);
    if (end > mDataCapacity && continueWrite(desired) != OK) {
        return NO_MEMORY;
    }
    if (mDataPos > mDataSize) {
        memset(mData + mDataSize, 0, mDataPos - mDataSize);
    }
    return OK;
}

status_t Parcel::finishWrite(size_t len) {
    mDataPos += len;
    mDataSize = std::max(mDataSize, mDataPos);
    return OK;
}

/** Empties the parcel and makes its capacity at least `desired`. */
status_t Parcel::restartWrite(size_t desired) {
    if (mOwner != nullptr) {
        freeData();
    }
    releaseObjects();
    mDataSize = 0;
    mDataPos = 0;
    mRequestHeaderPresent = false;
    mFdsKnown = true;
    mHasFds = false;
    return continueWrite(desired);
}

status_t Parcel::setData(const uint8_t* buffer, size_t len) {
    if (len > kMaxParcelBytes) {
        return BAD_VALUE;
    }
    if (const status_t status = restartWrite(len); status != OK) {
        return status;
    }
    if (len > 0) {
        memmove(mData, buffer, len);
    }
    mDataSize = len;
    return OK;
}

}  // namespace android
