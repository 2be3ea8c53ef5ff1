#include "Translator.h"

#include <cstring>

#include "Descriptors.h"
#include "ObjectPositions.h"

using android::base::unique_fd;

namespace binderhub {

namespace {

Strength strengthOf(uint32_t type) {
    return type == BINDER_TYPE_BINDER || type == BINDER_TYPE_HANDLE ? Strength::kStrong
                                                                    : Strength::kWeak;
}

ObjectPositions positionsIn(const Buffer& buffer) {
    const std::span<const uint8_t> payload = buffer.payload;
    return {buffer.dataSize, payload.subspan(alignToObject(buffer.dataSize), buffer.offsetsSize)};
}

}  // namespace

bool Translator::translate(Thread& sender, InMessage& message, bool acceptsDescriptors,
                           Buffer& buffer) {
    ObjectPositions positions = positionsIn(buffer);
    while (!positions.atEnd()) {
        size_t position = 0;
        if (!positions.next(&position)) {
            return false;
        }
        uint8_t* const place = buffer.payload.data() + position;
        flat_binder_object object;
        memcpy(&object, place, sizeof(object));
        if (!translateObject(sender, message, acceptsDescriptors, object, buffer)) {
            return false;
        }
        memcpy(place, &object, sizeof(object));
    }
    return true;
}

bool Translator::translateObject(Thread& sender, InMessage& message, bool acceptsDescriptors,
                                 flat_binder_object& object, Buffer& buffer) {
    switch (object.hdr.type) {
        case BINDER_TYPE_BINDER:
        case BINDER_TYPE_WEAK_BINDER:
            return translateBinder(sender, object, buffer);
        case BINDER_TYPE_HANDLE:
        case BINDER_TYPE_WEAK_HANDLE:
            return translateHandle(sender.process, object, buffer);
        case BINDER_TYPE_FD:
            return acceptsDescriptors && translateDescriptor(message, object, buffer);
        default:
            return false;
    }
}

bool Translator::translateBinder(Thread& sender, flat_binder_object& object, Buffer& buffer) {
    Node* const node = mReferences.nodeFor(sender.process, object);
    if (node == nullptr) {
        return false;
    }
    if (node->cookie == object.cookie &&
        hold(*node, strengthOf(object.hdr.type), &sender, object, buffer)) {
        return true;
    }
    mReferences.destroyIfUnused(*node);
    return false;
}

bool Translator::translateHandle(Process& sender, flat_binder_object& object, Buffer& buffer) {
    const Strength strength = strengthOf(object.hdr.type);
    Ref* const ref = References::find(sender, object.handle, strength);
    if (ref == nullptr) {
        return false;
    }
    Node& node = ref->node;
    if (node.owner != buffer.process) {
        return hold(node, strength, nullptr, object, buffer);
    }
    object.hdr.type = strength == Strength::kStrong ? BINDER_TYPE_BINDER : BINDER_TYPE_WEAK_BINDER;
    object.binder = node.ptr;
    object.cookie = node.cookie;
    mReferences.addLocal(node, strength);
    buffer.held.push_back({&node, 0, strength});
    return true;
}

bool Translator::hold(Node& node, Strength strength, Thread* giver, flat_binder_object& object,
                      Buffer& buffer) {
    Ref* const ref = mReferences.add(*buffer.process, node, strength, giver);
    if (ref == nullptr) {
        return false;
    }
    object.hdr.type = strength == Strength::kStrong ? BINDER_TYPE_HANDLE : BINDER_TYPE_WEAK_HANDLE;
    object.binder = 0;
    object.handle = ref->handle;
    object.cookie = 0;
    buffer.held.push_back({nullptr, ref->handle, strength});
    return true;
}

bool Translator::translateDescriptor(InMessage& message, flat_binder_object& object,
                                     Buffer& buffer) {
    BufferTable& buffers = buffer.process->buffers;
    if (object.handle >= message.descriptors.size() || !buffers.hasRoomForDescriptor() ||
        buffer.descriptors.size() >= kMaxDescriptors) {
        return false;
    }
    // Two objects may name one descriptor: each gets its own.
    unique_fd descriptor = duplicate(message.descriptors[object.handle].get());
    if (descriptor.get() < 0) {
        return false;
    }
    object.binder = 0;
    object.handle = static_cast<uint32_t>(buffer.descriptors.size());
    buffers.addDescriptor(buffer, std::move(descriptor));
    return true;
}

void Translator::release(Buffer& buffer) {
    for (const HeldObject& object : buffer.held) {
        if (object.node != nullptr) {
            mReferences.dropLocal(*object.node, object.strength);
        } else if (!mReferences.drop(*buffer.process, object.handle, object.strength)) {
            ++buffer.process->mistakes;  // it gave up more than was its own
        }
    }
    buffer.held.clear();
    if (buffer.target != nullptr) {
        mReferences.dropLocal(*buffer.target, Strength::kStrong);
        buffer.target = nullptr;
    }
}

}  // namespace binderhub
