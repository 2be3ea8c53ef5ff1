#include "Reaper.h"

#include <utility>
#include <vector>

namespace binderhub {

/** Calls that it made go on without a caller; the one that it handles now fails for its caller. */
void Reaper::leaveCalls(Thread& thread) {
    Transaction* const top = std::exchange(thread.stack, nullptr);
    Transaction* const handled = top != nullptr && top->to == &thread ? top : nullptr;
    for (Transaction* call = top; call != nullptr;) {
        if (call->to == &thread) {
            call->to = nullptr;
            call = std::exchange(call->toParent, nullptr);
        } else {
            call->from = nullptr;
            call = call->fromParent;
        }
    }
    if (handled != nullptr) {
        mTransactor.fail(handled, BR_DEAD_REPLY);
    }
}

void Reaper::release(Thread& thread) {
    thread.wantsReturns = false;
    thread.leaveWaiting();
    thread.leaveReady();
    leaveCalls(thread);
    while (Work* work = thread.todo.popFront()) {
        passOn(thread, *work);
    }
}

void Reaper::passOn(Thread& thread, Work& work) {
    if (work.kind == Work::Kind::kResult) {
        mTransactor.results.destroy(static_cast<Result*>(&work));
    } else if (work.kind != Work::Kind::kTransaction) {
        mScheduler.add(thread.process, work);
    } else if (static_cast<Transaction&>(work).isOneWay()) {
        mTransactor.dispatch(thread.process, static_cast<Transaction&>(work));
    } else {
        mTransactor.discard(static_cast<Transaction&>(work));
    }
}

void Reaper::release(Process& process, Work& work) {
    switch (work.kind) {
        case Work::Kind::kTransaction:
            mTransactor.end(static_cast<Transaction&>(work));  // its buffer goes with the process
            break;
        case Work::Kind::kDeadBinderAndClear:
        case Work::Kind::kClearDone:
            mReferences.destroyDeath(process, static_cast<Death&>(work));
            break;
        default:
            break;  // belongs to a node or a reference
    }
}

void Reaper::releaseAll(Process& process, WorkList& list) {
    while (Work* work = list.popFront()) {
        release(process, *work);
    }
}

void Reaper::releaseNodes(Process& process) {
    const auto nodes = std::exchange(process.nodes, {});
    for (const auto& [ptr, node] : nodes) {
        if (node == mReferences.manager()) {
            mReferences.setManager(nullptr);
        }
        releaseAll(process, node->asyncTodo);
        mDeaths.announce(*node);
        mReferences.orphan(*node);
    }
}

void Reaper::releaseHandles(Process& process) {
    std::vector<Ref*> refs;
    process.handles.forEach([&refs](Ref& ref) { refs.push_back(&ref); });
    for (Ref* ref : refs) {
        mReferences.destroy(*ref);
    }
    while (!process.toldDeaths.empty()) {  // cleared ones, which no reference has any more
        mReferences.destroyDeath(process, *process.toldDeaths.begin()->second);
    }
}

void Reaper::release(Process& process) {
    for (const auto& [key, thread] : process.threads) {
        thread->wantsReturns = false;  // nothing is to be delivered any more
    }
    for (const auto& [key, thread] : process.threads) {
        release(*thread);
    }
    releaseAll(process, process.todo);
    releaseNodes(process);
    releaseHandles(process);
    process.buffers.clear();
}

}  // namespace binderhub
