#pragma once

#include <utils/Errors.h>

#include <cstddef>
#include <cstdint>

#include "BinderProtocol.h"

/** Objects as they lie in a parcel, and the references a parcel holds for them. */
namespace android {

class IBinder;

/** A copy, because objects in a parcel are aligned to four bytes only. */
flat_binder_object objectAt(const uint8_t* data, size_t position);

/** The binder of an object of type BINDER_TYPE_BINDER that a parcel lists; null when it is null. */
IBinder* binderOf(const flat_binder_object& object);

/** Takes a strong reference for a binder in the name of `owner`; false for an impossible handle. */
bool acquireObject(const flat_binder_object& object, const void* owner);

/** Gives the reference back, or closes a descriptor that the parcel owns. */
void releaseObject(const flat_binder_object& object, const void* owner);

/**
 * Closes all descriptors of a buffer that the driver handed over, as they are the receiver's: those
 * of objects that can be told apart, up to the first that cannot.
 */
void closeDescriptors(const uint8_t* data, size_t size, const binder_size_t* objects, size_t count);

/** Whether all objects are of supported types, inside, aligned, in order and apart. */
bool areValidObjects(const uint8_t* data, size_t size, const binder_size_t* objects, size_t count);

/** First index whose object ends behind `position`; `count` when there is none. */
size_t firstObjectEndingAfter(const binder_size_t* objects, size_t count, size_t position);

/** Whether a parcel of this process can hold and release such an object. */
bool isSupportedType(uint32_t type);

/** Nice value at which the driver runs calls to a binder when the caller's own is weaker. */
constexpr uint32_t kMinimumPriority = 19;

/** The binder behind a handle as an object. */
flat_binder_object flatHandle(int32_t handle);

/** A descriptor as an object; its cookie says whether the parcel closes it. */
flat_binder_object flatDescriptor(int fd, bool owned);

/** A duplicate that the parcel closes; an error of errno, negative, when there are no more. */
status_t duplicateDescriptor(flat_binder_object* object);

}  // namespace android
