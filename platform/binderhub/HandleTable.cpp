#include "HandleTable.h"

#include <algorithm>

namespace binderhub {

Ref* HandleTable::find(const Node& node) const {
    const auto found = mByNode.find(&node);
    return found == mByNode.end() ? nullptr : found->second;
}

uint32_t HandleTable::freeHandle(uint32_t first) const {
    if (first == 0 && find(0) == nullptr) {
        return 0;
    }
    while (find(mFirstFree) != nullptr) {
        ++mFirstFree;
    }
    return mFirstFree;
}

void HandleTable::insert(Ref& ref) {
    if (ref.handle >= mByHandle.size()) {
        mByHandle.resize(ref.handle + 1);
    }
    mByHandle[ref.handle] = &ref;
    mByNode[&ref.node] = &ref;
}

void HandleTable::erase(Ref& ref) {
    mByHandle[ref.handle] = nullptr;
    mByNode.erase(&ref.node);
    if (ref.handle != 0) {
        mFirstFree = std::min(mFirstFree, ref.handle);
    }
}

}  // namespace binderhub
