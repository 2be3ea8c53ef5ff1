#pragma once

#include "Process.h"
#include "Thread.h"
#include "Work.h"

namespace binderhub {

/** Hands work to threads, and knows which of them have something to be told. */
class Scheduler {
  public:
    /** For this thread, which is told of it when it next asks. */
    static void addDeferred(Thread& thread, Work& work) { thread.todo.pushBack(work); }

    /** For this thread, at once. */
    void add(Thread& thread, Work& work);

    /** For whichever looper thread comes first. */
    void add(Process& process, Work& work);

    /** A waiting looper thread, which waits no longer; null when all are busy. */
    static Thread* takeWaiting(Process& process);

    /** To be called when the thread has sent something, or was found to have no returns. */
    void update(Thread& thread);

    /** Next thread that has asked for returns and has work; null when there is none. */
    Thread* nextReady() { return mReady.popFront(); }

  private:
    void wake(Thread& thread);

    List<Thread, ReadyTag> mReady;
};

}  // namespace binderhub
