#include "Returns.h"

#include <cstring>

namespace binderhub {

namespace {

/** The longest return: as long as a transaction with a security context. */
constexpr size_t kLongestReturn = sizeof(uint32_t) + sizeof(binder_transaction_data_secctx);
constexpr size_t kNodeReturns = 2 * (sizeof(uint32_t) + sizeof(binder_ptr_cookie));
static_assert(kNodeReturns <= kLongestReturn);

}  // namespace

void Returns::append(const void* bytes, size_t size) {
    memcpy(mBytes.data() + mSize, bytes, size);
    mSize += size;
}

template <typename T>
void Returns::write(uint32_t command, const T& parameter) {
    write(command);
    append(&parameter, sizeof(parameter));
}

bool Returns::hasRoom() const {
    return mBytes.size() - mSize >= kLongestReturn;
}

Work* Returns::nextWork(Thread& thread, bool takesProcessWork) {
    Work* const own = thread.todo.popFront();
    return own == nullptr && takesProcessWork ? thread.process.todo.popFront() : own;
}

bool Returns::take(Thread& thread) {
    mSize = 0;
    mBuffer = nullptr;
    write(BR_NOOP);
    const size_t nothing = mSize;
    // A thread that waits for a result of its own may be within the handling of a one-way call:
    // whatever comes for the process is not for it.
    const bool takesProcessWork = thread.isAvailable();
    bool more = true;
    while (more && hasRoom()) {
        Work* const work = nextWork(thread, takesProcessWork);
        more = work != nullptr && put(thread, *work);
    }
    if (thread.todo.empty()) {
        thread.hasUrgent = false;
    }
    if (mSize == nothing) {
        return false;
    }
    askForThread(thread);
    return true;
}

/** Returns whether more may follow. */
bool Returns::put(Thread& thread, Work& work) {
    switch (work.kind) {
        case Work::Kind::kResult:
            write(static_cast<Result&>(work).command);
            --thread.unreadResults;
            mTransactor.results.destroy(static_cast<Result*>(&work));
            return true;
        case Work::Kind::kNode:
            putNode(static_cast<Node&>(work));
            return true;
        case Work::Kind::kTransaction:
            putTransaction(thread, static_cast<Transaction&>(work));
            return false;
        default:
            return putDeath(thread.process, static_cast<Death&>(work));
    }
}

void Returns::putNode(Node& node) {
    const bool strong = node.needsStrong();
    const bool weak = node.needsWeak();
    const bool toldStrong = node.toldStrong;
    const bool toldWeak = node.toldWeak;
    const binder_ptr_cookie name = {node.ptr, node.cookie};
    node.toldStrong = strong;
    node.toldWeak = weak;
    if (weak && !toldWeak) {
        node.weakPending = true;
        mReferences.addLocal(node, Strength::kWeak);
        write(BR_INCREFS, name);
    }
    if (strong && !toldStrong) {
        node.strongPending = true;
        mReferences.addLocal(node, Strength::kStrong);
        write(BR_ACQUIRE, name);
    }
    if (!strong && toldStrong) {
        write(BR_RELEASE, name);
    }
    if (!weak && toldWeak) {
        write(BR_DECREFS, name);
    }
    if (!weak && !strong) {
        mReferences.destroyIfUnused(node);
    }
}

bool Returns::putDeath(Process& process, Death& death) {
    const binder_uintptr_t cookie = death.cookie;
    if (death.kind == Work::Kind::kClearDone) {
        write(BR_CLEAR_DEATH_NOTIFICATION_DONE, cookie);
        mReferences.destroyDeath(process, death);
        return true;
    }
    process.toldDeaths.emplace(death.cookie, &death);
    death.told = true;
    write(BR_DEAD_BINDER, cookie);
    return false;  // what it does about it may be a call of its own
}

void Returns::putTransaction(Thread& thread, Transaction& transaction) {
    mBuffer = transaction.buffer;
    const Node* const target = mBuffer->target;
    binder_transaction_data data = {};
    if (target != nullptr) {
        data.target.ptr = target->ptr;
        data.cookie = target->cookie;
    }
    data.code = transaction.code;
    data.flags = transaction.flags;
    data.sender_pid = transaction.from == nullptr ? 0 : transaction.from->process.pid;
    data.sender_euid = transaction.senderUid;
    data.data_size = mBuffer->dataSize;
    data.offsets_size = mBuffer->offsetsSize;
    data.data.ptr.offsets = alignToObject(mBuffer->dataSize);
    write(target == nullptr ? BR_REPLY : BR_TRANSACTION, data);
    mTransactor.markDelivered(thread, transaction);
}

void Returns::askForThread(Thread& thread) {
    Process& process = thread.process;
    if (process.requestedThreads != 0 || !process.waiting.empty() ||
        process.startedThreads >= process.maxThreads || !thread.isLooper()) {
        return;
    }
    ++process.requestedThreads;
    const uint32_t command = BR_SPAWN_LOOPER;
    memcpy(mBytes.data(), &command, sizeof(command));  // in place of BR_NOOP
}

}  // namespace binderhub
