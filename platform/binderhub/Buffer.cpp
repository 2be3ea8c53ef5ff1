#include "Buffer.h"

#include <algorithm>

#include "Limits.h"

using android::base::unique_fd;

namespace binderhub {

namespace {

size_t chargeOf(size_t dataSize, size_t offsetsSize) {
    const size_t content = alignToObject(dataSize) + alignToObject(offsetsSize);
    return std::max(content, sizeof(uint64_t)) + kBufferOverhead;
}

}  // namespace

Buffer* BufferTable::allocate(Process& process, size_t dataSize, size_t offsetsSize, bool oneWay) {
    if (dataSize > kBufferSpace || offsetsSize > kBufferSpace) {
        return nullptr;
    }
    const size_t charge = chargeOf(dataSize, offsetsSize);
    if (charge > kBufferSpace - mBytes || (oneWay && charge > kAsyncSpace - mAsyncBytes)) {
        return nullptr;
    }
    auto buffer = std::make_unique<Buffer>();
    buffer->id = ++mLastId;
    buffer->process = &process;
    buffer->oneWay = oneWay;
    buffer->charge = charge;
    buffer->dataSize = dataSize;
    buffer->offsetsSize = offsetsSize;
    mBytes += charge;
    mAsyncBytes += oneWay ? charge : 0;
    return (mBuffers[mLastId] = std::move(buffer)).get();
}

Buffer* BufferTable::findDelivered(uint64_t id) const {
    const auto found = mBuffers.find(id);
    return found != mBuffers.end() && found->second->delivered ? found->second.get() : nullptr;
}

bool BufferTable::hasRoomForDescriptor() const {
    return mDescriptors < kMaxHeldDescriptors;
}

void BufferTable::addDescriptor(Buffer& buffer, unique_fd descriptor) {
    buffer.descriptors.push_back(std::move(descriptor));
    ++mDescriptors;
}

void BufferTable::dropContent(Buffer& buffer) {
    mDescriptors -= buffer.descriptors.size();
    buffer.descriptors.clear();
    buffer.payload = std::vector<uint8_t>();
}

void BufferTable::destroy(Buffer& buffer) {
    dropContent(buffer);
    mBytes -= buffer.charge;
    mAsyncBytes -= buffer.oneWay ? buffer.charge : 0;
    mBuffers.erase(buffer.id);
}

}  // namespace binderhub
