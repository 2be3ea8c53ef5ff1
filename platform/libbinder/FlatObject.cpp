#include "FlatObject.h"

#include <ObjectPositions.h>
#include <binder/IBinder.h>
#include <binder/ProcessState.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace android {

namespace {

// Priority that the driver is told for descriptors: none in particular.
constexpr uint32_t kDescriptorPriority = 0x7f;

sp<IBinder> proxyOf(const flat_binder_object& object) {
    return ProcessState::self()->getStrongProxyForHandle(static_cast<int32_t>(object.handle));
}

}  // namespace

IBinder* binderOf(const flat_binder_object& object) {
    // The driver's format holds pointers as numbers.
    return reinterpret_cast<IBinder*>(  // NOLINT(performance-no-int-to-ptr)
            static_cast<uintptr_t>(object.cookie));
}

flat_binder_object objectAt(const uint8_t* data, size_t position) {
    flat_binder_object object;
    memcpy(&object, data + position, sizeof(object));
    return object;
}

bool acquireObject(const flat_binder_object& object, const void* owner) {
    if (object.hdr.type == BINDER_TYPE_BINDER && object.binder != 0) {
        binderOf(object)->incStrong(owner);
    } else if (object.hdr.type == BINDER_TYPE_HANDLE) {
        const sp<IBinder> proxy = proxyOf(object);
        if (proxy == nullptr) {
            return false;
        }
        proxy->incStrong(owner);
    }
    return true;
}

void releaseObject(const flat_binder_object& object, const void* owner) {
    if (object.hdr.type == BINDER_TYPE_BINDER && object.binder != 0) {
        binderOf(object)->decStrong(owner);
    } else if (object.hdr.type == BINDER_TYPE_HANDLE) {
        // The parcel's own reference has kept this proxy the one of its handle.
        if (const sp<IBinder> proxy = proxyOf(object); proxy != nullptr) {
            proxy->decStrong(owner);
        }
    } else if (object.hdr.type == BINDER_TYPE_FD && object.cookie != 0) {
        close(static_cast<int>(object.handle));
    }
}

namespace {

binderhub::ObjectPositions positionsOf(size_t size, const binder_size_t* objects, size_t count) {
    return {size, {reinterpret_cast<const uint8_t*>(objects), count * sizeof(*objects)}};
}

}  // namespace

void closeDescriptors(const uint8_t* data, size_t size, const binder_size_t* objects,
                      size_t count) {
    binderhub::ObjectPositions positions = positionsOf(size, objects, count);
    for (size_t position = 0; positions.next(&position);) {
        const flat_binder_object object = objectAt(data, position);
        if (object.hdr.type == BINDER_TYPE_FD) {
            close(static_cast<int>(object.handle));
        } else if (!isSupportedType(object.hdr.type)) {
            return;  // of a size that is not known
        }
    }
}

bool areValidObjects(const uint8_t* data, size_t size, const binder_size_t* objects, size_t count) {
    binderhub::ObjectPositions positions = positionsOf(size, objects, count);
    while (!positions.atEnd()) {
        size_t position = 0;
        if (!positions.next(&position) || !isSupportedType(objectAt(data, position).hdr.type)) {
            return false;
        }
    }
    return true;
}

size_t firstObjectEndingAfter(const binder_size_t* objects, size_t count, size_t position) {
    const auto endsBefore = [](binder_size_t start, size_t limit) {
        return start + sizeof(flat_binder_object) <= limit;
    };
    const binder_size_t* end = objects + count;
    return static_cast<size_t>(std::lower_bound(objects, end, position, endsBefore) - objects);
}

bool isSupportedType(uint32_t type) {
    return type == BINDER_TYPE_BINDER || type == BINDER_TYPE_HANDLE || type == BINDER_TYPE_FD;
}

flat_binder_object flatHandle(int32_t handle) {
    flat_binder_object object = {};
    object.hdr.type = BINDER_TYPE_HANDLE;
    object.flags = kMinimumPriority;
    object.handle = static_cast<uint32_t>(handle);
    return object;
}

flat_binder_object flatDescriptor(int fd, bool owned) {
    flat_binder_object object = {};
    object.hdr.type = BINDER_TYPE_FD;
    object.flags = kDescriptorPriority | FLAT_BINDER_FLAG_ACCEPTS_FDS;
    object.handle = static_cast<uint32_t>(fd);
    object.cookie = owned ? 1 : 0;
    return object;
}

status_t duplicateDescriptor(flat_binder_object* object) {
    const int copy = fcntl(static_cast<int>(object->handle), F_DUPFD_CLOEXEC, 0);
    if (copy < 0) {
        return -errno;
    }
    *object = flatDescriptor(copy, true);
    return OK;
}

}  // namespace android
