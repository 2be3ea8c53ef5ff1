// Binders and other objects in a parcel, and the list of where they stand.

#include <binder/BpBinder.h>
#include <binder/Parcel.h>
#include <binder/ProcessState.h>
#include <binder/Stability.h>

#include <cstdlib>
#include <cstring>
#include <vector>

#include "FlatObject.h"
#include "ParcelLimits.h"

namespace android {

namespace {

flat_binder_object flatBinder(BBinder* binder) {
    flat_binder_object object = {};
    object.hdr.type = BINDER_TYPE_BINDER;
    object.flags = kMinimumPriority;
    if (binder != nullptr) {
        object.flags |= FLAT_BINDER_FLAG_ACCEPTS_FDS;
        object.binder = reinterpret_cast<uintptr_t>(binder->getWeakRefs());
        object.cookie = reinterpret_cast<uintptr_t>(static_cast<IBinder*>(binder));
    }
    return object;
}

/** Makes objects again of bytes that were copied from objects of another parcel. */
status_t listCopiedObjects(Parcel* parcel, const std::vector<size_t>& positions) {
    for (const size_t position : positions) {
        flat_binder_object object = objectAt(parcel->data(), position);
        status_t status = object.hdr.type == BINDER_TYPE_FD ? duplicateDescriptor(&object) : OK;
        if (status == OK) {
            parcel->setDataPosition(position);
            status = parcel->writeObject(object, true);
        }
        if (status != OK) {
            return status;
        }
    }
    return OK;
}

}  // namespace

size_t Parcel::objectsCount() const {
    return mObjectsSize;
}

void Parcel::releaseObjects() {
    while (mObjectsSize > 0) {
        releaseObject(objectAt(mData, mObjects[--mObjectsSize]), this);
    }
}

/** Fails when an object stands in the next `len` bytes: its bytes are pointers, not data. */
status_t Parcel::validateReadData(size_t len) const {
    if (mObjectsSize == 0 || mDataPos >= mDataSize) {
        return OK;
    }
    const size_t next = firstObjectEndingAfter(mObjects, mObjectsSize, mDataPos);
    const bool overlaps = next < mObjectsSize && mObjects[next] < mDataPos + len;
    return overlaps ? PERMISSION_DENIED : OK;
}

status_t Parcel::writeObject(const flat_binder_object& val, bool nullMetaData) {
    if (!isSupportedType(val.hdr.type)) {
        return BAD_TYPE;
    }
    if (const status_t status = growData(sizeof(val)); status != OK) {
        return status;
    }
    if (nullMetaData || val.binder != 0) {
        if (!acquireObject(val, this)) {
            return BAD_VALUE;
        }
        if (mObjectsSize == mObjectsCapacity) {
            const size_t capacity = (mObjectsCapacity + 2) * 3 / 2;
            void* objects = realloc(mObjects, capacity * sizeof(binder_size_t));
            if (objects == nullptr) {
                releaseObject(val, this);
                return NO_MEMORY;
            }
            mObjects = static_cast<binder_size_t*>(objects);
            mObjectsCapacity = capacity;
        }
        const size_t index = firstObjectEndingAfter(mObjects, mObjectsSize, mDataPos);
        memmove(mObjects + index + 1, mObjects + index,
                (mObjectsSize - index) * sizeof(binder_size_t));
        mObjects[index] = mDataPos;
        ++mObjectsSize;
        mFdsKnown = mFdsKnown && val.hdr.type != BINDER_TYPE_FD;
    }
    memcpy(mData + mDataPos, &val, sizeof(val));
    return finishWrite(sizeof(val));
}

const flat_binder_object* Parcel::readObject(bool nullMetaData) const {
    if (mDataPos > mDataSize || mDataSize - mDataPos < sizeof(flat_binder_object)) {
        return nullptr;
    }
    const flat_binder_object object = objectAt(mData, mDataPos);
    const size_t index = firstObjectEndingAfter(mObjects, mObjectsSize, mDataPos);
    const bool listed = index < mObjectsSize && mObjects[index] == mDataPos;
    // A null binder is written without an entry in the list.
    const bool isNull = !nullMetaData && object.binder == 0 && object.cookie == 0;
    if (!listed && (!isNull || validateReadData(sizeof(object)) != OK)) {
        return nullptr;
    }
    const uint8_t* found = mData + mDataPos;
    mDataPos += sizeof(object);
    return reinterpret_cast<const flat_binder_object*>(found);
}

status_t Parcel::appendFrom(const Parcel* parcel, size_t offset, size_t len) {
    if (parcel->mError != NO_ERROR) {
        return parcel->mError;
    }
    if (offset > parcel->mDataSize || len > parcel->mDataSize - offset) {
        return BAD_VALUE;
    }
    if (const status_t status = growData(len); len == 0 || status != OK) {
        return status;
    }
    const size_t start = mDataPos;
    memmove(mData + start, parcel->mData + offset, len);
    finishWrite(len);
    const size_t end = mDataPos;
    std::vector<size_t> positions;  // copied, because the other parcel may be this one
    for (size_t i = 0; i < parcel->mObjectsSize; ++i) {
        const size_t position = parcel->mObjects[i];
        if (position >= offset && position + sizeof(flat_binder_object) <= offset + len) {
            positions.push_back(position - offset + start);
        }
    }
    const status_t status = listCopiedObjects(this, positions);
    mDataPos = end;
    return status;
}

status_t Parcel::flattenBinder(const sp<IBinder>& binder) {
    BpBinder* remote = binder != nullptr ? binder->remoteBinder() : nullptr;
    BBinder* local = binder != nullptr ? binder->localBinder() : nullptr;
    if (binder != nullptr && local == nullptr && remote == nullptr) {
        return BAD_TYPE;
    }
    const flat_binder_object object =
            remote != nullptr ? flatHandle(remote->handle()) : flatBinder(local);
    const status_t status = writeObject(object, false);
    return status != OK ? status : finishFlattenBinder(binder, {});
}

/** Writes the stability word that follows each binder, the null binder's too. */
status_t Parcel::finishFlattenBinder(const sp<IBinder>& binder, const flat_binder_object&) {
    internal::Stability::tryMarkCompilationUnit(binder.get());
    return writeInt32(internal::Stability::get(binder.get()));
}

status_t Parcel::unflattenBinder(sp<IBinder>* out) const {
    const flat_binder_object* found = readObject(false);
    if (found == nullptr) {
        return BAD_TYPE;
    }
    const flat_binder_object object = objectAt(reinterpret_cast<const uint8_t*>(found), 0);
    if (object.hdr.type == BINDER_TYPE_HANDLE) {
        const auto handle = static_cast<int32_t>(object.handle);
        return finishUnflattenBinder(ProcessState::self()->getStrongProxyForHandle(handle), out);
    }
    if (object.hdr.type != BINDER_TYPE_BINDER) {
        return BAD_TYPE;
    }
    return finishUnflattenBinder(binderOf(object), out);
}

status_t Parcel::finishUnflattenBinder(const sp<IBinder>& binder, sp<IBinder>* out) const {
    int32_t stability;
    if (const status_t status = readInt32(&stability); status != OK) {
        return status;
    }
    // The level is the lower half; other releases keep something else above it.
    const status_t status =
            internal::Stability::set(binder.get(), static_cast<int16_t>(stability), true);
    if (status == OK) {
        *out = binder;
    }
    return status;
}

status_t Parcel::writeStrongBinder(const sp<IBinder>& val) {
    return flattenBinder(val);
}

sp<IBinder> Parcel::readStrongBinder() const {
    sp<IBinder> binder;
    readNullableStrongBinder(&binder);
    return binder;
}

status_t Parcel::readStrongBinder(sp<IBinder>* val) const {
    const status_t status = readNullableStrongBinder(val);
    return status == OK && *val == nullptr ? UNEXPECTED_NULL : status;
}

status_t Parcel::readNullableStrongBinder(sp<IBinder>* val) const {
    return unflattenBinder(val);
}

}  // namespace android
