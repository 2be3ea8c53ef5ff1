#pragma once

#include <cstdint>

#include "List.h"

namespace binderhub {

struct WorkTag;

/** Something that a thread will be told in a return. Stands in at most one work list. */
struct Work : Link<WorkTag> {
    enum class Kind : uint8_t {
        kTransaction,         ///< Transaction: call or reply
        kResult,              ///< Result: how a command went
        kNode,                ///< Node: its references have changed
        kDeadBinder,          ///< Death: not told yet, or told and not acknowledged
        kDeadBinderAndClear,  ///< Death: likewise, and the process has cleared it meanwhile
        kClearDone,           ///< Death: cleared
    };

    explicit Work(Kind workKind) : kind(workKind) {}

    Kind kind;
};

using WorkList = List<Work, WorkTag>;

/** A return without parameters: BR_TRANSACTION_COMPLETE, BR_FAILED_REPLY, BR_DEAD_REPLY. */
struct Result : Work {
    explicit Result(uint32_t result) : Work(Kind::kResult), command(result) {}

    uint32_t command;
};

}  // namespace binderhub
