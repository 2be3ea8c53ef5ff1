#pragma once

#include <linux/android/binder.h>

#include <cstdint>
#include <span>

#include "Buffer.h"

/** The data and the offsets of a BC_TRANSACTION or BC_REPLY in its message's payload. */
namespace binderhub {

/** Whether both parts are there, where they may be and as long as they may be. */
bool isWellFormed(const binder_transaction_data& data, std::span<const uint8_t> payload);

/** Copies both, which are well-formed, to a buffer that was allocated for them. */
void copyPayload(const binder_transaction_data& data, std::span<const uint8_t> payload,
                 Buffer& buffer);

}  // namespace binderhub
