#include "References.h"

#include <algorithm>

#include "Limits.h"

namespace binderhub {

Node* References::nodeFor(Process& owner, const flat_binder_object& object) {
    const auto found = owner.nodes.find(object.binder);
    if (found != owner.nodes.end()) {
        return found->second;
    }
    if (owner.nodes.size() >= kMaxNodes) {
        return nullptr;
    }
    return owner.nodes[object.binder] = nodes.make(owner, object);
}

void References::destroyIfUnused(Node& node) {
    if (!node.refs.empty() || node.localStrong != 0 || node.localWeak != 0) {
        return;
    }
    if (node.owner != nullptr) {
        node.owner->nodes.erase(node.ptr);
    }
    nodes.destroy(&node);
}

void References::tellOwnerOrDestroy(Node& node) {
    if (node.owner == nullptr || !(node.toldStrong || node.toldWeak)) {
        destroyIfUnused(node);
    } else if (!node.linked()) {
        mScheduler.add(*node.owner, node);
    }
}

void References::addLocal(Node& node, Strength strength) {
    ++(strength == Strength::kStrong ? node.localStrong : node.localWeak);
}

void References::dropLocal(Node& node, Strength strength) {
    const bool strong = strength == Strength::kStrong;
    --(strong ? node.localStrong : node.localWeak);
    if (strong ? !node.needsStrong() : node.localWeak == 0 && node.refs.empty()) {
        tellOwnerOrDestroy(node);
    }
}

bool References::confirm(Process& owner, const binder_ptr_cookie& name, Strength strength) {
    const auto found = owner.nodes.find(name.ptr);
    if (found == owner.nodes.end() || found->second->cookie != name.cookie) {
        return false;
    }
    Node& node = *found->second;
    bool& pending = strength == Strength::kStrong ? node.strongPending : node.weakPending;
    if (!pending) {
        return false;
    }
    pending = false;
    dropLocal(node, strength);
    return true;
}

bool References::addRef(Node& node, Strength strength, Thread* giver) {
    if (strength == Strength::kStrong) {
        const bool isLiveManager = &node == mManager && node.toldStrong;
        if (giver == nullptr && node.strongRefs == 0 && !isLiveManager) {
            return false;
        }
        ++node.strongRefs;
        if (giver != nullptr && !node.toldStrong) {
            node.unlink();
            Scheduler::addDeferred(*giver, node);
        }
    } else if (!node.toldWeak && !node.linked()) {
        if (giver == nullptr) {
            return false;
        }
        Scheduler::addDeferred(*giver, node);
    }
    return true;
}

void References::dropRef(Node& node, Strength strength) {
    if (strength == Strength::kStrong) {
        --node.strongRefs;
        if (!node.needsStrong()) {
            tellOwnerOrDestroy(node);
        }
    } else if (node.localWeak == 0 && node.refs.empty()) {
        tellOwnerOrDestroy(node);
    }
}

Ref* References::find(const Process& process, uint32_t handle, Strength needed) {
    Ref* const ref = process.handles.find(handle);
    return ref == nullptr || (needed == Strength::kStrong && ref->strong == 0) ? nullptr : ref;
}

Ref* References::make(Process& process, Node& node) {
    if (process.handles.count() >= kMaxHandles) {
        return nullptr;
    }
    const uint32_t handle = process.handles.freeHandle(&node == mManager ? 0 : 1);
    Ref* const ref = refs.make(process, node, handle);
    process.handles.insert(*ref);
    node.refs.pushBack(*ref);
    return ref;
}

bool References::increase(Ref& ref, Strength strength, Thread* giver) {
    uint64_t& count = strength == Strength::kStrong ? ref.strong : ref.weak;
    if (count == 0 && !addRef(ref.node, strength, giver)) {
        return false;
    }
    ++count;
    return true;
}

Ref* References::add(Process& process, Node& node, Strength strength, Thread* giver) {
    Ref* ref = process.handles.find(node);
    if (ref == nullptr) {
        ref = make(process, node);
    }
    if (ref == nullptr || increase(*ref, strength, giver)) {
        return ref;
    }
    if (ref->strong == 0 && ref->weak == 0) {
        destroy(*ref);
    }
    return nullptr;
}

bool References::add(Process& process, uint32_t handle, Strength strength) {
    if (handle == 0 && mManager != nullptr) {
        return mManager->owner != &process && add(process, *mManager, strength, nullptr) != nullptr;
    }
    Ref* const ref = find(process, handle, strength);
    return ref != nullptr && increase(*ref, strength, nullptr);
}

bool References::drop(Process& process, uint32_t handle, Strength strength) {
    Ref* const ref = process.handles.find(handle);
    if (ref == nullptr) {
        return false;
    }
    uint64_t& count = strength == Strength::kStrong ? ref->strong : ref->weak;
    if (count == 0) {
        return false;
    }
    --count;
    if (ref->strong == 0 && ref->weak == 0) {
        remove(*ref, strength == Strength::kStrong);
    } else if (strength == Strength::kStrong && count == 0) {
        dropRef(ref->node, strength);
    }
    return true;
}

void References::destroy(Ref& ref) {
    remove(ref, ref.strong != 0);
}

void References::remove(Ref& ref, bool countsAsStrong) {
    Node& node = ref.node;
    ref.process.handles.erase(ref);
    if (ref.death != nullptr) {
        destroyDeath(ref.process, *ref.death);
    }
    refs.destroy(&ref);  // leaves the node's list
    if (countsAsStrong) {
        --node.strongRefs;
    }
    if ((countsAsStrong && !node.needsStrong()) || (node.localWeak == 0 && node.refs.empty())) {
        tellOwnerOrDestroy(node);
    }
}

void References::orphan(Node& node) {
    node.owner = nullptr;
    node.localStrong = 0;
    node.localWeak = 0;
    node.unlink();
    destroyIfUnused(node);
}

void References::destroyDeath(Process& process, Death& death) {
    if (death.told) {
        const auto [first, last] = process.toldDeaths.equal_range(death.cookie);
        process.toldDeaths.erase(std::find_if(
                first, last, [&death](const auto& entry) { return entry.second == &death; }));
    }
    --process.deaths;
    deaths.destroy(&death);
}

}  // namespace binderhub
