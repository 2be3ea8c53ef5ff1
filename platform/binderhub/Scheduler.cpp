#include "Scheduler.h"

namespace binderhub {

void Scheduler::wake(Thread& thread) {
    if (thread.wantsReturns) {
        thread.leaveWaiting();
        mReady.pushBack(thread);
    }
}

void Scheduler::add(Thread& thread, Work& work) {
    thread.todo.pushBack(work);
    thread.hasUrgent = true;
    wake(thread);
}

void Scheduler::add(Process& process, Work& work) {
    process.todo.pushBack(work);
    Thread* const thread = takeWaiting(process);
    if (thread != nullptr) {
        wake(*thread);
    }
}

Thread* Scheduler::takeWaiting(Process& process) {
    return process.waiting.popFront();
}

void Scheduler::update(Thread& thread) {
    const bool available = thread.isAvailable();
    if (!thread.wantsReturns) {
        return;
    }
    if (thread.hasUrgent || (available && !thread.process.todo.empty())) {
        wake(thread);
    } else if (!available) {
        thread.leaveWaiting();
    } else if (!thread.Link<WaitingTag>::linked()) {
        thread.process.waiting.pushFront(thread);
    }
}

}  // namespace binderhub
