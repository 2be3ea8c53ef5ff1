#pragma once

#include <linux/android/binder.h>

#include <cstdint>

#include "List.h"
#include "Work.h"

namespace binderhub {

struct Process;
struct Ref;
struct RefTag;

enum class Strength : uint8_t { kWeak, kStrong };

/**
 * A binder that its owner has given to others. References of other processes are its `refs`;
 * *local* counts are those of buffers on their way to the owner and of the owner's answers that the
 * hub waits for. `told…` is what the owner knows (BR_ACQUIRE, BR_INCREFS), `…Pending` that it has
 * not confirmed it yet.
 */
struct Node : Work {
    Node(Process& process, const flat_binder_object& object)
          : Work(Kind::kNode),
            owner(&process),
            ptr(object.binder),
            cookie(object.cookie),
            acceptsDescriptors((object.flags & FLAT_BINDER_FLAG_ACCEPTS_FDS) != 0) {}

    bool needsStrong() const { return strongRefs != 0 || localStrong != 0; }
    bool needsWeak() const { return !refs.empty() || localWeak != 0 || needsStrong(); }

    Process* owner;  ///< null once it has died
    const uint64_t ptr;
    const uint64_t cookie;
    const bool acceptsDescriptors;
    bool toldStrong = false;
    bool toldWeak = false;
    bool strongPending = false;
    bool weakPending = false;
    uint64_t strongRefs = 0;  ///< how many of `refs` are strong
    uint64_t localStrong = 0;
    uint64_t localWeak = 0;
    List<Ref, RefTag> refs;

    /** One-way calls are handled one at a time: the next ones wait until its buffer is free. */
    bool hasAsync = false;
    WorkList asyncTodo;
};

/** What a process wants to be told when a node dies. */
struct Death : Work {
    explicit Death(uint64_t deathCookie) : Work(Kind::kDeadBinder), cookie(deathCookie) {}

    const uint64_t cookie;
    bool told = false;  ///< in Process::toldDeaths
};

/** A process's reference to a node of another process. */
struct Ref : Link<RefTag> {
    Ref(Process& refProcess, Node& refNode, uint32_t number)
          : process(refProcess), node(refNode), handle(number) {}

    Process& process;
    Node& node;
    const uint32_t handle;
    uint64_t strong = 0;
    uint64_t weak = 0;
    Death* death = nullptr;
};

}  // namespace binderhub
