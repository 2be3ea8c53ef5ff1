#pragma once

#include <cstdint>

#include "CommandReader.h"
#include "Deaths.h"
#include "HubSocket.h"
#include "References.h"
#include "Thread.h"
#include "Transactor.h"

namespace binderhub {

/** The BC_ commands of one message. */
class Commands {
  public:
    Commands(References& references, Deaths& deaths, Transactor& transactor)
          : mReferences(references), mDeaths(deaths), mTransactor(transactor) {}

    /** Carries out all; false at the first that is not one, or when a bound is exceeded. */
    bool run(Thread& thread, InMessage& message);

  private:
    bool runOne(const Command& command, Thread& thread, InMessage& message);
    bool runTransfer(const Command& command, Thread& thread, InMessage& message);
    bool runCount(const Command& command, Process& process);
    bool runLooper(uint32_t code, Thread& thread);
    static bool registerLooper(Thread& thread);

    References& mReferences;
    Deaths& mDeaths;
    Transactor& mTransactor;
};

}  // namespace binderhub
