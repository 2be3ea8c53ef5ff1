#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

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
    bool runOne(uint32_t command, const uint8_t* parameter, Thread& thread, InMessage& message);
    bool runTransfer(uint32_t command, const uint8_t* parameter, Thread& thread,
                     InMessage& message);
    bool runCount(uint32_t command, const uint8_t* parameter, Process& process);
    bool runLooper(uint32_t command, Thread& thread);
    static bool registerLooper(Thread& thread);

    References& mReferences;
    Deaths& mDeaths;
    Transactor& mTransactor;
};

}  // namespace binderhub
