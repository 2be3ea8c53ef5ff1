#pragma once

#include <android/binder_status.h>
#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>
#include <sys/cdefs.h>
#include <uchar.h>

struct AIBinder;
typedef struct AIBinder AIBinder;

__BEGIN_DECLS

/**
 * Values on their way from one process to another, and a position at which the next is read or
 * written. Belongs to one thread at a time.
 *
 * What is read may come from anyone. A count is compared with the data that is left before an
 * allocator is asked for room: a count below -1 gives STATUS_BAD_VALUE, one beyond the data
 * STATUS_NOT_ENOUGH_DATA. After a failed read the values read so far stay where they are.
 */
struct AParcel;
typedef struct AParcel AParcel;

/** An empty parcel that belongs to no call. */
AParcel* AParcel_create(void) __attribute__((warn_unused_result));

/** Null is fine. */
void AParcel_delete(AParcel* parcel);

/** STATUS_BAD_VALUE when negative. A position beyond the end is taken, reads there fail. */
binder_status_t AParcel_setDataPosition(const AParcel* parcel, int32_t position);
int32_t AParcel_getDataPosition(const AParcel* parcel);

/** Null is fine. A reference is kept until the parcel has been received or deleted. */
binder_status_t AParcel_writeStrongBinder(AParcel* parcel, AIBinder* binder);
/** `*binder` is null, or comes with a strong reference that the caller owns. */
binder_status_t AParcel_readStrongBinder(const AParcel* parcel, AIBinder** binder);

/** Sends a duplicate of `fd`; -1 stands for none. */
binder_status_t AParcel_writeParcelFileDescriptor(AParcel* parcel, int fd);
/** `*fd` is the caller's to close, or -1. */
binder_status_t AParcel_readParcelFileDescriptor(const AParcel* parcel, int* fd);

/** A status of EX_TRANSACTION_FAILED is not written: its AStatus_getStatus is the result. */
binder_status_t AParcel_writeStatusHeader(AParcel* parcel, const AStatus* status);
/** `*status` is set only when STATUS_OK comes back, and is the caller's then. */
binder_status_t AParcel_readStatusHeader(const AParcel* parcel, AStatus** status);

/**
 * Gives room for a string of `length` bytes, the zero at its end included, in `*buffer`. `length`
 * is -1, and `buffer` null, for a null string. False: there is no room, or null is not wanted.
 */
typedef bool (*AParcel_stringAllocator)(void* stringData, int32_t length, char** buffer);

/** UTF-8 of `length` bytes; null with length -1. */
binder_status_t AParcel_writeString(AParcel* parcel, const char* string, int32_t length);
/** STATUS_UNEXPECTED_NULL when the allocator refuses null, STATUS_NO_MEMORY when it refuses. */
binder_status_t AParcel_readString(const AParcel* parcel, void* stringData,
                                   AParcel_stringAllocator allocator);

/** Makes an array of `length` elements; -1 for a null array. */
typedef bool (*AParcel_parcelableArrayAllocator)(void* arrayData, int32_t length);
typedef binder_status_t (*AParcel_writeParcelableElement)(AParcel* parcel, const void* arrayData,
                                                          size_t index);
typedef binder_status_t (*AParcel_readParcelableElement)(const AParcel* parcel, void* arrayData,
                                                         size_t index);

/** An array of anything; -1 for a null one. The first failure of an element ends it. */
binder_status_t AParcel_writeParcelableArray(AParcel* parcel, const void* arrayData, int32_t length,
                                             AParcel_writeParcelableElement elementWriter);
/** Each element takes at least four bytes of the parcel. */
binder_status_t AParcel_readParcelableArray(const AParcel* parcel, void* arrayData,
                                            AParcel_parcelableArrayAllocator allocator,
                                            AParcel_readParcelableElement elementReader);

// Single values.
binder_status_t AParcel_writeInt32(AParcel* parcel, int32_t value);
binder_status_t AParcel_writeInt64(AParcel* parcel, int64_t value);
binder_status_t AParcel_writeFloat(AParcel* parcel, float value);
binder_status_t AParcel_writeDouble(AParcel* parcel, double value);
binder_status_t AParcel_writeBool(AParcel* parcel, bool value);
binder_status_t AParcel_writeChar(AParcel* parcel, char16_t value);
binder_status_t AParcel_writeByte(AParcel* parcel, int8_t value);
binder_status_t AParcel_readInt32(const AParcel* parcel, int32_t* value);
binder_status_t AParcel_readInt64(const AParcel* parcel, int64_t* value);
binder_status_t AParcel_readFloat(const AParcel* parcel, float* value);
binder_status_t AParcel_readDouble(const AParcel* parcel, double* value);
binder_status_t AParcel_readBool(const AParcel* parcel, bool* value);
binder_status_t AParcel_readChar(const AParcel* parcel, char16_t* value);
binder_status_t AParcel_readByte(const AParcel* parcel, int8_t* value);

/**
 * Gives room for `length` elements in `*outBuffer`, which may stay null when `length` is 0.
 * `length` is -1 for a null array. False: there is no room, or null is not wanted.
 */
typedef bool (*AParcel_int32ArrayAllocator)(void* arrayData, int32_t length, int32_t** outBuffer);
typedef bool (*AParcel_uint32ArrayAllocator)(void* arrayData, int32_t length, uint32_t** outBuffer);
typedef bool (*AParcel_int64ArrayAllocator)(void* arrayData, int32_t length, int64_t** outBuffer);
typedef bool (*AParcel_uint64ArrayAllocator)(void* arrayData, int32_t length, uint64_t** outBuffer);
typedef bool (*AParcel_floatArrayAllocator)(void* arrayData, int32_t length, float** outBuffer);
typedef bool (*AParcel_doubleArrayAllocator)(void* arrayData, int32_t length, double** outBuffer);
typedef bool (*AParcel_charArrayAllocator)(void* arrayData, int32_t length, char16_t** outBuffer);
typedef bool (*AParcel_byteArrayAllocator)(void* arrayData, int32_t length, int8_t** outBuffer);

/** Booleans are taken and given one by one: a vector of them has no memory to point at. */
typedef bool (*AParcel_boolArrayAllocator)(void* arrayData, int32_t length);
typedef bool (*AParcel_boolArrayGetter)(const void* arrayData, size_t index);
typedef void (*AParcel_boolArraySetter)(void* arrayData, size_t index, bool value);

// Arrays; a null one has length -1. STATUS_BAD_VALUE when length and pointer do not agree.
binder_status_t AParcel_writeInt32Array(AParcel* parcel, const int32_t* arrayData, int32_t length);
binder_status_t AParcel_writeUint32Array(AParcel* parcel, const uint32_t* arrayData,
                                         int32_t length);
binder_status_t AParcel_writeInt64Array(AParcel* parcel, const int64_t* arrayData, int32_t length);
binder_status_t AParcel_writeUint64Array(AParcel* parcel, const uint64_t* arrayData,
                                         int32_t length);
binder_status_t AParcel_writeFloatArray(AParcel* parcel, const float* arrayData, int32_t length);
binder_status_t AParcel_writeDoubleArray(AParcel* parcel, const double* arrayData, int32_t length);
binder_status_t AParcel_writeBoolArray(AParcel* parcel, const void* arrayData, int32_t length,
                                       AParcel_boolArrayGetter getter);
binder_status_t AParcel_writeCharArray(AParcel* parcel, const char16_t* arrayData, int32_t length);
binder_status_t AParcel_writeByteArray(AParcel* parcel, const int8_t* arrayData, int32_t length);

// STATUS_UNEXPECTED_NULL when the allocator refuses null, STATUS_NO_MEMORY when it refuses.
binder_status_t AParcel_readInt32Array(const AParcel* parcel, void* arrayData,
                                       AParcel_int32ArrayAllocator allocator);
binder_status_t AParcel_readUint32Array(const AParcel* parcel, void* arrayData,
                                        AParcel_uint32ArrayAllocator allocator);
binder_status_t AParcel_readInt64Array(const AParcel* parcel, void* arrayData,
                                       AParcel_int64ArrayAllocator allocator);
binder_status_t AParcel_readUint64Array(const AParcel* parcel, void* arrayData,
                                        AParcel_uint64ArrayAllocator allocator);
binder_status_t AParcel_readFloatArray(const AParcel* parcel, void* arrayData,
                                       AParcel_floatArrayAllocator allocator);
binder_status_t AParcel_readDoubleArray(const AParcel* parcel, void* arrayData,
                                        AParcel_doubleArrayAllocator allocator);
binder_status_t AParcel_readBoolArray(const AParcel* parcel, void* arrayData,
                                      AParcel_boolArrayAllocator allocator,
                                      AParcel_boolArraySetter setter);
binder_status_t AParcel_readCharArray(const AParcel* parcel, void* arrayData,
                                      AParcel_charArrayAllocator allocator);
binder_status_t AParcel_readByteArray(const AParcel* parcel, void* arrayData,
                                      AParcel_byteArrayAllocator allocator);

__END_DECLS
