#include "Payload.h"

#include <cstring>

#include "Limits.h"

namespace binderhub {

namespace {

/** Whether this part is there, at a place where it may be. */
bool liesIn(std::span<const uint8_t> payload, uint64_t offset, uint64_t size) {
    return size == 0 || (offset % sizeof(uint64_t) == 0 && offset <= payload.size() &&
                         size <= payload.size() - offset);
}

}  // namespace

bool isWellFormed(const binder_transaction_data& data, std::span<const uint8_t> payload) {
    return data.data_size <= kBufferSpace && data.offsets_size % sizeof(binder_size_t) == 0 &&
           liesIn(payload, data.data.ptr.buffer, data.data_size) &&
           liesIn(payload, data.data.ptr.offsets, data.offsets_size);
}

void copyPayload(const binder_transaction_data& data, std::span<const uint8_t> payload,
                 Buffer& buffer) {
    const size_t offsets = alignToObject(buffer.dataSize);
    buffer.payload.resize(offsets + buffer.offsetsSize);
    if (buffer.dataSize != 0) {
        memcpy(buffer.payload.data(), payload.data() + data.data.ptr.buffer, buffer.dataSize);
    }
    if (buffer.offsetsSize != 0) {
        memcpy(buffer.payload.data() + offsets, payload.data() + data.data.ptr.offsets,
               buffer.offsetsSize);
    }
}

}  // namespace binderhub
