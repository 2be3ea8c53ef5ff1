#pragma once

#include <cstddef>
#include <cstdint>

#include "BinderProtocol.h"

namespace android {

/**
 * Memory for the data of a transaction that the hub knows as `bufferId`, aligned to eight bytes and
 * not cleared; null when there is none. Thread-safe.
 */
uint8_t* newHubBuffer(uint64_t bufferId, size_t size);

/**
 * Frees what newHubBuffer() returned and tells the hub's number of it. Returns false, and does
 * nothing, for memory that cannot be such a buffer. Thread-safe.
 */
bool freeHubBuffer(binder_uintptr_t address, uint64_t* bufferId);

}  // namespace android
