#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "References.h"
#include "Thread.h"
#include "Transactor.h"

namespace binderhub {

/** The returns of one message, made anew for each. */
class Returns {
  public:
    Returns(References& references, Transactor& transactor)
          : mReferences(references), mTransactor(transactor) {}

    /**
     * Takes work for this thread as long as there is room, up to and with one transaction. False
     * when there was nothing to tell.
     */
    bool take(Thread& thread);

    std::span<const uint8_t> bytes() const { return {mBytes.data(), mSize}; }

    /** What the transaction or reply brings; null when there is none. */
    Buffer* buffer() const { return mBuffer; }

  private:
    bool hasRoom() const;
    static Work* nextWork(Thread& thread, bool takesProcessWork);
    bool put(Thread& thread, Work& work);
    void putNode(Node& node);
    bool putDeath(Process& process, Death& death);
    void putTransaction(Thread& thread, Transaction& transaction);
    void askForThread(Thread& thread);

    void append(const void* bytes, size_t size);
    void write(uint32_t command) { append(&command, sizeof(command)); }
    template <typename T>
    void write(uint32_t command, const T& parameter);

    References& mReferences;
    Transactor& mTransactor;
    std::array<uint8_t, kMaxReturns> mBytes;
    size_t mSize = 0;
    Buffer* mBuffer = nullptr;
};

}  // namespace binderhub
