#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "Node.h"

namespace binderhub {

/** A process's references by handle and by node. Does not own them. */
class HandleTable {
  public:
    Ref* find(uint32_t handle) const {
        return handle < mByHandle.size() ? mByHandle[handle] : nullptr;
    }
    Ref* find(const Node& node) const;

    /** The lowest number that is free, from `first` on: 0 or 1. */
    uint32_t freeHandle(uint32_t first) const;

    void insert(Ref& ref);
    void erase(Ref& ref);
    size_t count() const { return mByNode.size(); }

    template <typename Visit>
    void forEach(Visit&& visit) const {
        for (Ref* ref : mByHandle) {
            if (ref != nullptr) {
                visit(*ref);
            }
        }
    }

  private:
    std::vector<Ref*> mByHandle;
    std::unordered_map<const Node*, Ref*> mByNode;
    mutable uint32_t mFirstFree = 1;  // no number from 1 on that is lower is free
};

}  // namespace binderhub
