#pragma once

#include <linux/android/binder.h>

#include <cstdint>

#include "Node.h"
#include "Pool.h"
#include "Process.h"
#include "Scheduler.h"

namespace binderhub {

/**
 * Counts references on nodes, and by handles, and has owners told when the first comes and the last
 * goes. Whatever is counted down to nothing is destroyed: do not use a node or a reference after
 * giving up a count on it.
 */
class References {
  public:
    explicit References(Scheduler& scheduler) : mScheduler(scheduler) {}

    /** The process's node for this object, made if need be; null when it may have no more. */
    Node* nodeFor(Process& owner, const flat_binder_object& object);

    /** Destroys a node that nothing refers to. */
    void destroyIfUnused(Node& node);

    /** Counts by a buffer, or an outstanding answer, of the owner. */
    void addLocal(Node& node, Strength strength);
    void dropLocal(Node& node, Strength strength);

    /** BC_INCREFS_DONE, BC_ACQUIRE_DONE. Returns whether it was awaited. */
    bool confirm(Process& owner, const binder_ptr_cookie& name, Strength strength);

    /** Null when there is none, or none of the strength that is needed. */
    static Ref* find(const Process& process, uint32_t handle, Strength needed);

    /**
     * Counts a reference of `process` to another process's node, which gets a handle for it if it
     * has none. `giver` is the owner's thread that gives the node away just now, or null. Null when
     * it has too many, or when only the owner could allow the first strong one.
     */
    Ref* add(Process& process, Node& node, Strength strength, Thread* giver);

    /** Counts a reference by a handle. Returns whether there is such a one. */
    bool add(Process& process, uint32_t handle, Strength strength);
    bool drop(Process& process, uint32_t handle, Strength strength);

    /** Gives up a reference whatever its counts. */
    void destroy(Ref& ref);

    /** The owner has died: its references go on naming a dead node. */
    void orphan(Node& node);

    /** Makes this the node behind handle 0. Null: nobody is. */
    void setManager(Node* node) { mManager = node; }
    Node* manager() const { return mManager; }

    void destroyDeath(Process& process, Death& death);

    Pool<Node> nodes;
    Pool<Ref> refs;
    Pool<Death> deaths;

  private:
    bool addRef(Node& node, Strength strength, Thread* giver);
    bool increase(Ref& ref, Strength strength, Thread* giver);
    void dropRef(Node& node, Strength strength);
    void remove(Ref& ref, bool countsAsStrong);
    void tellOwnerOrDestroy(Node& node);
    Ref* make(Process& process, Node& node);

    Scheduler& mScheduler;
    Node* mManager = nullptr;
};

}  // namespace binderhub
