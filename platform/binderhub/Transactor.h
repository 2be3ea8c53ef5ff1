#pragma once

#include <linux/android/binder.h>

#include <cstdint>

#include "HubSocket.h"
#include "Pool.h"
#include "References.h"
#include "Scheduler.h"
#include "Transaction.h"
#include "Translator.h"

namespace binderhub {

/** Calls and replies on their way: BC_TRANSACTION, BC_REPLY, BC_FREE_BUFFER and failures. */
class Transactor {
  public:
    Transactor(Scheduler& scheduler, References& references, Translator& translator)
          : mScheduler(scheduler), mReferences(references), mTranslator(translator) {}

    /** Carries out the command; whatever fails, the threads concerned are told in returns. */
    void call(Thread& sender, const binder_transaction_data& data, InMessage& message);
    void reply(Thread& sender, const binder_transaction_data& data, InMessage& message);

    /** BC_FREE_BUFFER. Returns whether the process has such a buffer. */
    bool freeBuffer(Process& process, uint64_t id);

    /**
     * Ends a two-way call without a reply: tells its caller, or, where that has gone, the one who
     * waits for the caller, and so on.
     */
    void fail(Transaction* transaction, uint32_t error);

    /** Ends a transaction that was not delivered and never will be, with its buffer or without. */
    void discard(Transaction& transaction);
    void end(Transaction& transaction);

    /** The thread's reader has it now: a two-way call goes on its stack, others end. */
    void markDelivered(Thread& thread, Transaction& transaction);

    /** A transaction for whichever looper thread comes first. */
    void dispatch(Process& process, Transaction& call);

    /** A result that is worth waking the thread. */
    void addResult(Thread& thread, uint32_t result);

    Pool<Transaction> transactions;
    Pool<Result> results;

  private:
    struct Target {
        Node* node = nullptr;
        Thread* thread = nullptr;  ///< that waits within the same chain of calls
    };

    uint32_t findTarget(const Thread& sender, uint32_t handle, Target* target) const;
    static uint32_t findNestedThread(const Thread& sender, Target* target);
    Transaction* prepare(Thread& sender, const binder_transaction_data& data, InMessage& message,
                         Process& process, Node* node, bool acceptsDescriptors);
    void destroyBuffer(Buffer& buffer);
    void sendCall(Thread& sender, Transaction& call, Thread* nested);
    void sendOneWay(Thread& sender, Transaction& call);
    void sendReply(Thread& sender, const binder_transaction_data& data, InMessage& message,
                   Transaction& call);
    void releaseNextOneWay(Node& node);
    Result* newResult(Thread& thread, uint32_t result);

    Scheduler& mScheduler;
    References& mReferences;
    Translator& mTranslator;
};

}  // namespace binderhub
