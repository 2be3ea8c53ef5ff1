#pragma once

#include "Deaths.h"
#include "References.h"
#include "Transactor.h"

namespace binderhub {

/** Undoes what threads and processes had when they are gone, and tells those whom it concerns. */
class Reaper {
  public:
    Reaper(Scheduler& scheduler, References& references, Deaths& deaths, Transactor& transactor)
          : mScheduler(scheduler),
            mReferences(references),
            mDeaths(deaths),
            mTransactor(transactor) {}

    /** What the thread was to be told and can be told to another goes to its process. */
    void release(Thread& thread);

    void release(Process& process);

  private:
    void leaveCalls(Thread& thread);
    void passOn(Thread& thread, Work& work);
    void release(Process& process, Work& work);
    void releaseNodes(Process& process);
    void releaseHandles(Process& process);
    void releaseAll(Process& process, WorkList& list);

    Scheduler& mScheduler;
    References& mReferences;
    Deaths& mDeaths;
    Transactor& mTransactor;
};

}  // namespace binderhub
