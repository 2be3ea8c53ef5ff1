#include <binder/BpBinder.h>

namespace android {

BpBinder::ObjectManager::ObjectManager() = default;

BpBinder::ObjectManager::~ObjectManager() {
    kill();
}

void BpBinder::ObjectManager::attach(const void* objectID, void* object, void* cleanupCookie,
                                     IBinder::object_cleanup_func func) {
    mObjects.add(objectID, {object, cleanupCookie, func});
}

void* BpBinder::ObjectManager::find(const void* objectID) const {
    const ssize_t index = mObjects.indexOfKey(objectID);
    return index < 0 ? nullptr : mObjects.valueAt(static_cast<size_t>(index)).object;
}

void BpBinder::ObjectManager::detach(const void* objectID) {
    mObjects.removeItem(objectID);
}

void BpBinder::ObjectManager::kill() {
    for (size_t i = 0; i < mObjects.size(); ++i) {
        const entry_t& entry = mObjects.valueAt(i);
        if (entry.func != nullptr) {
            entry.func(mObjects.keyAt(i), entry.object, entry.cleanupCookie);
        }
    }
    mObjects.clear();
}

}  // namespace android
