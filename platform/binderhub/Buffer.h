#pragma once

#include <android-base/unique_fd.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

#include "Node.h"

namespace binderhub {

/** A reference that a buffer keeps: on a node of its process, or by a handle of its process. */
struct HeldObject {
    Node* node;  ///< null: it is the handle
    uint32_t handle;
    Strength strength;
};

/** What a process receives in one transaction or reply, until it gives it back. */
struct Buffer {
    uint64_t id = 0;
    Process* process = nullptr;
    Node* target = nullptr;  ///< null for a reply; holds a strong local count
    bool oneWay = false;
    bool delivered = false;
    size_t charge = 0;  ///< of the process's buffer space (bytes)
    std::vector<HeldObject> held;

    // Until it is delivered:
    size_t dataSize = 0;
    size_t offsetsSize = 0;
    std::vector<uint8_t> payload;  ///< data, padding to a multiple of 8, offsets
    std::vector<android::base::unique_fd> descriptors;
};

/** Where the offsets stand in a payload with that much data, and what either takes (bytes). */
constexpr size_t alignToObject(size_t size) {
    return (size + 7) & ~size_t{7};
}

/** A process's buffers, within kBufferSpace and kAsyncSpace. */
class BufferTable {
  public:
    /** A new buffer; null when there is no room. */
    Buffer* allocate(Process& process, size_t dataSize, size_t offsetsSize, bool oneWay);

    /** Null when there is none, or it has not been delivered. */
    Buffer* findDelivered(uint64_t id) const;

    /** Whether so many more descriptors may wait for this process. */
    bool hasRoomForDescriptor() const;
    void addDescriptor(Buffer& buffer, android::base::unique_fd descriptor);

    /** The content has gone out: what is held stays. */
    void dropContent(Buffer& buffer);

    void destroy(Buffer& buffer);
    void clear() { mBuffers.clear(); }

    size_t count() const { return mBuffers.size(); }
    size_t bytes() const { return mBytes; }
    size_t asyncBytes() const { return mAsyncBytes; }
    size_t heldDescriptors() const { return mDescriptors; }

    template <typename Visit>
    void forEach(Visit&& visit) const {
        for (const auto& [id, buffer] : mBuffers) {
            visit(*buffer);
        }
    }

  private:
    std::unordered_map<uint64_t, std::unique_ptr<Buffer>> mBuffers;
    uint64_t mLastId = 0;
    size_t mBytes = 0;
    size_t mAsyncBytes = 0;
    size_t mDescriptors = 0;
};

}  // namespace binderhub
