#pragma once

#include <sys/types.h>

#include <cstdint>

#include "Buffer.h"
#include "Work.h"

namespace binderhub {

struct Process;
struct Thread;

/**
 * A call or a reply. A one-way call and a reply end when they are delivered. A two-way call stands
 * on the caller's stack and, once delivered, on the receiver's, until it is answered: `fromParent`
 * and `toParent` are what lies below it there.
 */
struct Transaction : Work {
    Transaction() : Work(Kind::kTransaction) {}

    bool isReply() const { return buffer->target == nullptr; }
    bool isOneWay() const { return buffer->oneWay; }
    bool isTwoWay() const { return !isReply() && !isOneWay(); }

    Thread* from = nullptr;  ///< null for a reply, a one-way call, and when the caller has gone
    Transaction* fromParent = nullptr;
    Thread* to = nullptr;  ///< null until it is delivered, and when the receiver has gone
    Transaction* toParent = nullptr;
    Buffer* buffer = nullptr;  ///< null once delivered, and then nothing above may be asked
    uint32_t depth = 0;        ///< how many two-way calls it is part of
    uint32_t code = 0;
    uint32_t flags = 0;
    uid_t senderUid = 0;
};

}  // namespace binderhub
