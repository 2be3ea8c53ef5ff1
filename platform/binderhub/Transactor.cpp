#include "Transactor.h"

#include "Limits.h"
#include "Payload.h"

namespace binderhub {

namespace {

constexpr uint32_t kNoError = BR_OK;

bool isOneWayCall(const binder_transaction_data& data) {
    return (data.flags & TF_ONE_WAY) != 0;
}

}  // namespace

Result* Transactor::newResult(Thread& thread, uint32_t result) {
    if (++thread.unreadResults > kMaxUnreadResults) {
        thread.process.broken = true;
    }
    return results.make(result);
}

void Transactor::addResult(Thread& thread, uint32_t result) {
    mScheduler.add(thread, *newResult(thread, result));
}

uint32_t Transactor::findTarget(const Thread& sender, uint32_t handle, Target* target) const {
    if (handle == 0) {
        target->node = mReferences.manager();
        if (target->node == nullptr) {
            return BR_DEAD_REPLY;
        }
        return target->node->owner == &sender.process ? BR_FAILED_REPLY : kNoError;
    }
    const Ref* const ref = References::find(sender.process, handle, Strength::kStrong);
    if (ref == nullptr) {
        return BR_FAILED_REPLY;
    }
    target->node = &ref->node;
    return ref->node.owner == nullptr ? BR_DEAD_REPLY : kNoError;
}

uint32_t Transactor::findNestedThread(const Thread& sender, Target* target) {
    const Transaction* const top = sender.stack;
    if (top == nullptr) {
        return kNoError;
    }
    if (top->to != &sender || top->depth >= kMaxCallDepth) {
        return BR_FAILED_REPLY;  // it waits for a reply already, or it is nested too deeply
    }
    for (const Transaction* call = top; call != nullptr; call = call->fromParent) {
        if (call->from != nullptr && &call->from->process == target->node->owner) {
            target->thread = call->from;
            return kNoError;
        }
    }
    return kNoError;
}

Transaction* Transactor::prepare(Thread& sender, const binder_transaction_data& data,
                                 InMessage& message, Process& process, Node* node,
                                 bool acceptsDescriptors) {
    if (!isWellFormed(data, message.payload)) {
        return nullptr;
    }
    const bool oneWay = node != nullptr && isOneWayCall(data);
    Buffer* const buffer =
            process.buffers.allocate(process, data.data_size, data.offsets_size, oneWay);
    if (buffer == nullptr) {
        return nullptr;
    }
    copyPayload(data, message.payload, *buffer);
    if (node != nullptr) {
        buffer->target = node;
        mReferences.addLocal(*node, Strength::kStrong);
    }
    if (!mTranslator.translate(sender, message, acceptsDescriptors, *buffer)) {
        destroyBuffer(*buffer);
        return nullptr;
    }
    Transaction* const transaction = transactions.make();
    transaction->buffer = buffer;
    transaction->code = data.code;
    transaction->flags = data.flags;
    transaction->senderUid = sender.process.shownUid;
    return transaction;
}

void Transactor::call(Thread& sender, const binder_transaction_data& data, InMessage& message) {
    Target target;
    uint32_t error = findTarget(sender, data.target.handle, &target);
    if (error == kNoError && !isOneWayCall(data)) {
        error = findNestedThread(sender, &target);
    }
    if (error != kNoError) {
        addResult(sender, error);
        return;
    }
    Node& node = *target.node;
    Transaction* const call =
            prepare(sender, data, message, *node.owner, &node, node.acceptsDescriptors);
    if (call == nullptr) {
        addResult(sender, BR_FAILED_REPLY);
    } else if (isOneWayCall(data)) {
        sendOneWay(sender, *call);
    } else {
        sendCall(sender, *call, target.thread);
    }
}

void Transactor::sendCall(Thread& sender, Transaction& call, Thread* nested) {
    call.from = &sender;
    call.fromParent = sender.stack;
    call.depth = sender.stack == nullptr ? 1 : sender.stack->depth + 1;
    sender.stack = &call;
    // Comes with the reply: waking the caller for it would only cost time.
    Scheduler::addDeferred(sender, *newResult(sender, BR_TRANSACTION_COMPLETE));
    if (nested != nullptr) {
        mScheduler.add(*nested, call);
    } else {
        dispatch(*call.buffer->process, call);
    }
}

void Transactor::sendOneWay(Thread& sender, Transaction& call) {
    Node& node = *call.buffer->target;
    addResult(sender, BR_TRANSACTION_COMPLETE);
    if (node.hasAsync) {
        node.asyncTodo.pushBack(call);
        return;
    }
    node.hasAsync = true;
    dispatch(*node.owner, call);
}

void Transactor::dispatch(Process& process, Transaction& call) {
    Thread* const thread = Scheduler::takeWaiting(process);
    if (thread != nullptr) {
        mScheduler.add(*thread, call);
    } else {
        process.todo.pushBack(call);
    }
}

void Transactor::reply(Thread& sender, const binder_transaction_data& data, InMessage& message) {
    Transaction* const call = sender.stack;
    if (call == nullptr || call->to != &sender) {
        addResult(sender, BR_FAILED_REPLY);
        return;
    }
    sender.stack = call->toParent;
    call->to = nullptr;
    if (call->from == nullptr) {
        addResult(sender, BR_TRANSACTION_COMPLETE);
        fail(call, BR_DEAD_REPLY);
        return;
    }
    sendReply(sender, data, message, *call);
}

void Transactor::sendReply(Thread& sender, const binder_transaction_data& data, InMessage& message,
                           Transaction& call) {
    Thread& caller = *call.from;
    Transaction* const reply = prepare(sender, data, message, caller.process, nullptr,
                                       (call.flags & TF_ACCEPT_FDS) != 0);
    if (reply == nullptr) {
        addResult(sender, BR_TRANSACTION_COMPLETE);
        fail(&call, BR_FAILED_REPLY);
        return;
    }
    Result* const complete = newResult(sender, BR_TRANSACTION_COMPLETE);
    if (data.offsets_size == 0 && sender.todo.empty()) {
        Scheduler::addDeferred(sender, *complete);
    } else {
        // Objects in the reply: the sender keeps them only until it is told.
        mScheduler.add(sender, *complete);
    }
    caller.stack = call.fromParent;
    transactions.destroy(&call);
    mScheduler.add(caller, *reply);
}

void Transactor::fail(Transaction* transaction, uint32_t error) {
    while (transaction != nullptr) {
        Thread* const caller = transaction->from;
        Transaction* const parent = transaction->fromParent;
        if (caller != nullptr) {
            caller->stack = parent;
        }
        transactions.destroy(transaction);
        if (caller != nullptr) {
            addResult(*caller, error);
            return;
        }
        transaction = parent;
    }
}

void Transactor::discard(Transaction& transaction) {
    Buffer& buffer = *transaction.buffer;
    end(transaction);
    destroyBuffer(buffer);
}

void Transactor::end(Transaction& transaction) {
    if (transaction.isTwoWay()) {
        fail(&transaction, BR_DEAD_REPLY);
    } else {
        transactions.destroy(&transaction);
    }
}

void Transactor::markDelivered(Thread& thread, Transaction& transaction) {
    const bool twoWay = transaction.isTwoWay();
    transaction.buffer->delivered = true;
    transaction.buffer = nullptr;
    if (!twoWay) {
        transactions.destroy(&transaction);
        return;
    }
    transaction.toParent = thread.stack;
    transaction.to = &thread;
    thread.stack = &transaction;
}

void Transactor::releaseNextOneWay(Node& node) {
    Work* const next = node.asyncTodo.popFront();
    if (next == nullptr) {
        node.hasAsync = false;
    } else {
        dispatch(*node.owner, *static_cast<Transaction*>(next));
    }
}

void Transactor::destroyBuffer(Buffer& buffer) {
    mTranslator.release(buffer);
    buffer.process->buffers.destroy(buffer);
}

bool Transactor::freeBuffer(Process& process, uint64_t id) {
    Buffer* const buffer = process.buffers.findDelivered(id);
    if (buffer == nullptr) {
        return false;
    }
    if (buffer->oneWay) {
        releaseNextOneWay(*buffer->target);
    }
    destroyBuffer(*buffer);
    return true;
}

}  // namespace binderhub
